#include "settingswriter.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDebug>
#include <QThread>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;
using Clock = std::chrono::steady_clock;

class SettingsWriter::Work
{
public:
    Work(Write write, std::chrono::milliseconds rest)
        : m_write(std::move(write))
        , m_rest(rest)
    {
    }

    void put(const QVariantMap &values)
    {
        const std::lock_guard lock(m_mutex);
        m_values = values;
        if (!m_due)
            m_due = Clock::now() + m_rest;
        m_changed.notify_all();
    }

    void end(std::function<void(bool isWritten)> lastly)
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
        m_lastly = std::move(lastly);
        if (m_due || m_failed)
            m_due = Clock::now();
        m_changed.notify_all();
    }

    void abandon()
    {
        const std::lock_guard lock(m_mutex);
        m_abandoned = true;
    }

    void run()
    {
        std::unique_lock lock(m_mutex);
        while (waitUntilDue(lock)) {
            m_due.reset();
            const QVariantMap values = m_values;
            lock.unlock();
            const QString error = m_write(values);
            lock.lock();
            finish(error);
        }
        const auto lastly = std::exchange(m_lastly, {});
        const bool isWritten = !m_failed;
        lock.unlock();
        if (lastly)
            lastly(isWritten);
    }

private:
    /// Waits for a change and then for the end of its rest. False once there is nothing left to do.
    bool waitUntilDue(std::unique_lock<std::mutex> &lock)
    {
        m_changed.wait(lock, [this] { return m_due || m_ended; });
        while (m_due && Clock::now() < *m_due)
            m_changed.wait_until(lock, Clock::time_point(*m_due));
        return m_due.has_value();
    }

    void finish(const QString &error)
    {
        const bool failedBefore = std::exchange(m_failed, !error.isEmpty());
        if (m_failed && !failedBefore && !m_abandoned) // else the log may be closed
            qDebug() << "The settings file cannot be written:" << error;
    }

    const Write m_write;
    const std::chrono::milliseconds m_rest;

    std::mutex m_mutex; ///< guards the following
    std::condition_variable m_changed;
    QVariantMap m_values; ///< the latest
    std::optional<Clock::time_point> m_due; ///< of the next write
    std::function<void(bool isWritten)> m_lastly;
    bool m_failed = false; ///< the last write
    bool m_ended = false;
    bool m_abandoned = false;
};

SettingsWriter::SettingsWriter(Write write, std::chrono::milliseconds rest)
    : m_work(std::make_shared<Work>(std::move(write), rest))
    , m_thread(QThread::create([work = m_work] { work->run(); }))
{
    m_thread->setObjectName("settings"_L1);
    QObject::connect(m_thread.get(), &QThread::finished, m_thread.get(), &QObject::deleteLater);
    m_thread->start();
}

SettingsWriter::~SettingsWriter()
{
    if (m_thread)
        end();
}

void SettingsWriter::put(const QVariantMap &values)
{
    m_work->put(values);
}

void SettingsWriter::end(std::function<void(bool isWritten)> lastly)
{
    m_work->end(std::move(lastly));
    if (m_thread->wait(QDeadlineTimer(longestEnd))) {
        m_thread.reset();
    } else {
        m_work->abandon();
        QThread *thread = m_thread.release(); // deletes itself
        QObject::connect(
            qApp, &QObject::destroyed, thread, [thread] { thread->wait(); }, Qt::DirectConnection);
    }
}
