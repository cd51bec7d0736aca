#include "restingfocus.h"

#include <QComboBox>
#include <QEvent>
#include <QWidget>

RestingFocus::RestingFocus(QWidget *place)
    : QObject(place)
    , m_place(place)
{
    for (QWidget *widget : place->findChildren<QWidget *>()) {
        if (widget->window() == place->window())
            keepFromFocus(widget);
    }
    place->setFocusPolicy(Qt::ClickFocus);
    place->installEventFilter(this);
    rest();
}

void RestingFocus::keepFromFocus(QWidget *widget)
{
    if (widget->focusPolicy() & Qt::TabFocus)
        widget->setFocusPolicy(Qt::TabFocus);
    widget->installEventFilter(this);
}

void RestingFocus::rest()
{
    m_focused = m_place;
    m_place->setFocus(Qt::OtherFocusReason);
}

bool RestingFocus::eventFilter(QObject *object, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        rest(); // the clicked widget itself may have the focus
        break;
    case QEvent::FocusIn:
        // When a widget is disabled, Qt moves its focus on before it sends EnabledChange.
        if (!m_focused || m_focused->isEnabled())
            m_focused = static_cast<QWidget *>(object);
        return object == m_place; // which would repaint itself, and with it the whole window
    case QEvent::FocusOut:
        return object == m_place;
    case QEvent::EnabledChange:
        if (object == m_focused && !m_focused->isEnabled())
            rest();
        break;
    case QEvent::Wheel:
        return qobject_cast<QComboBox *>(object) != nullptr;
    default:
        break;
    }
    return false;
}
