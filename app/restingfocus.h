#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

/// Keeps the keyboard focus off the widgets of a window unless Tab takes it to one, so that a key
/// or a turn of the wheel that is meant for something else operates none of them: at the start,
/// after a click anywhere, and when the widget with the focus is disabled, it rests in a place that
/// has no keys of its own. Closed lists ignore the wheel. GUI thread.
class RestingFocus : public QObject
{
public:
    /// The focus rests on `place`, which holds all the widgets and owns this object. Widgets that
    /// are added later are not kept from the focus.
    explicit RestingFocus(QWidget *place);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void keepFromFocus(QWidget *widget);
    void rest();

    QWidget *m_place;
    QPointer<QWidget> m_focused; ///< where the focus is, or was until its widget was disabled
};
