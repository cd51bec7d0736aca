#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

/// Keeps the keyboard focus off a window's widgets unless Tab moves it there, so that a stray key
/// or turn of the wheel does not operate one: at the start, after any click, and when the focused
/// widget is disabled, the focus rests on a widget that handles no keys. Closed lists ignore the
/// wheel. GUI thread.
class RestingFocus : public QObject
{
public:
    /// The focus rests on `place`, which contains all the widgets and owns this object. Widgets
    /// added later are not covered.
    explicit RestingFocus(QWidget *place);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void keepFromFocus(QWidget *widget);
    void rest();

    QWidget *m_place;
    QPointer<QWidget> m_focused; ///< the focused widget, also just after it was disabled
};
