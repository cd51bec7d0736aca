#pragma once

#include "pong.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHash>
#include <QSet>
#include <QThread>
#include <QTimer>

inline constexpr int tickMs = 3;
inline constexpr int checkMs = 1000;

/// Records when parentless timers fire on the test's thread.
class TimerWatch : public QObject
{
public:
    TimerWatch() { qApp->installEventFilter(this); }

    int timeouts(int interval) const { return m_timeouts.value(interval); }
    /// The timers of an interval that fired.
    QSet<QTimer *> timers(int interval) const { return m_timers.value(interval); }
    QList<int> intervals() const { return m_timeouts.keys(); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *timer = qobject_cast<QTimer *>(watched);
        if (event->type() == QEvent::Timer && timer && !timer->parent()) {
            ++m_timeouts[timer->interval()];
            m_timers[timer->interval()].insert(timer);
        }
        return false;
    }

private:
    QHash<int, int> m_timeouts;
    QHash<int, QSet<QTimer *>> m_timers;
};

inline bool isLoaded(const Pong &pong)
{
    return pong.thread() != QThread::currentThread();
}
