#pragma once

#include <QMainWindow>
#include <QSlider>
#include <QTimer>

/// Works at a program's main window as an operator does during a show, without end, at 60 steps a
/// second. It finds the widgets by their names in the form, so that any program with the form can
/// be operated. GUI thread.
class Operator : public QObject
{
public:
    /// Begins an action: "speed" drags the speed slider, "lists" opens and closes the enabled
    /// lists, "learn" clicks the enabled learn buttons twice each, "size" resizes the window, and
    /// "report" delivers a report of a ready host. An unknown action is fatal.
    Operator(QMainWindow *window, const QByteArray &action);

private:
    void step();
    void drag();
    void openOrCloseList();
    void clickLearn();
    void resizeWindow();
    void report();
    bool isTurn();

    QMainWindow *m_window;
    void (Operator::*m_action)();
    QTimer m_timer;
    int m_steps = 0;
    int m_turns = 0;
    QSize m_size; ///< of the window at the beginning
    QRect m_handle; ///< of the slider, and its value, when the mouse was pressed
    int m_heldValue = 0;
};
