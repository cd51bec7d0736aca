#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QList>
#include <QTimer>

/// The timers of this thread that have expired since it was made, with one entry for each time:
/// for those that have no parent by which to find them.
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
