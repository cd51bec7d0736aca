#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QList>
#include <QTimer>

/// Records the timers of this thread that expire, one entry per timeout. For timers that have no
/// parent through which to find them.
class ExpiredTimers : public QObject
{
public:
    ExpiredTimers() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (auto *timer = qobject_cast<QTimer *>(object); timer && event->type() == QEvent::Timer)
            timers.append(timer);
        return false;
    }

    QList<QTimer *> timers;
};
