#pragma once

#include "mainwindow.h"
#include "workingfolder.h"

#include <QEvent>

#include <memory>
#include <optional>

class QAbstractButton;

/// Counts the paint events of the watched widget.
class Paintings : public QObject
{
public:
    bool eventFilter(QObject * /*object*/, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    int count = 0;
};

/// The operator's window in its own working directory, with the host, MIDI devices and gamepads
/// that the test links.
class OperatorWindow
{
public:
    /// Creates the working directory, with a settings file if given, but no window yet.
    explicit OperatorWindow(const QByteArray &settingsFile = {});
    virtual ~OperatorWindow();
    OperatorWindow(const OperatorWindow &) = delete;
    OperatorWindow &operator=(const OperatorWindow &) = delete;

    /// Creates and shows the window, and waits until its first load is done.
    void open();
    /// Waits until the game has reported the host's state.
    void waitForStatus() const;
    /// Destroys the window.
    void close();

    /// The window's game. A test changes only values that the program's own threads would change.
    virtual Pong &game() const { return const_cast<Pong &>(window->game()); }
    /// Makes the game thread run ticks in addition to its timer's, and waits for them.
    void tick(int count) const;
    /// Makes the game thread check the host now instead of at the next second, and the window show
    /// the result.
    void checkHost() const;
    /// The step of a side's paddle.
    int step(int side) const;
    /// The side that has requested a start since the last call, if any; the match is then reset.
    std::optional<int> takeStart() const;
    /// The same, but waits some seconds for a start.
    std::optional<int> awaitStart() const;

    /// The window as a widget.
    virtual QWidget *widget() const { return window.get(); }
    /// A widget by its name in the form; it must exist.
    template <class T = QWidget>
    T *find(const QString &name) const
    {
        T *found = widget()->findChild<T *>(name);
        Q_ASSERT(found);
        return found;
    }
    /// Clicks a button with the mouse.
    void click(const QString &name) const;
    static void click(QAbstractButton *button);
    QString text(const QString &name) const;
    /// The value of a key in the settings file; empty if missing.
    QString setting(const QString &key) const;

    std::unique_ptr<MainWindow> window;

private:
    WorkingFolder m_folder;
};

/// The style sheets of a button that is switched on, and off.
extern const QString activeLook;
extern const QString idleLook;

/// Adds the column `side` and a row for each side.
void addSides();
/// "L" or "R".
QString sideLetter(int side);
