#include "settingswriter.h"

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
    Work(IniValues values, Replace replace, std::chrono::milliseconds rest)
        : m_replace(std::move(replace))
        , m_rest(rest)
        , m_values(std::move(values))
    {
    }

    void put(const QString &key, const QVariant &value)
    {
        const std::lock_guard lock(m_mutex);
        m_changes.insert(key, value);
        if (!m_due)
            writeAt(Clock::now() + m_rest);
    }

    void startWriting()
    {
        const std::lock_guard lock(m_mutex);
        if (m_due || m_failed)
            writeAt(Clock::now());
    }

    bool waitUntilIdle(std::chrono::milliseconds longest)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, longest, [this] { return !m_due && !m_writing; });
    }

    void end()
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
        m_changed.notify_all();
    }

    void run()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [this] { return m_due || m_ended; });
            if (!m_due)
                return;
            while (Clock::now() < *m_due)
                m_changed.wait_until(lock, Clock::time_point(*m_due));
            m_due.reset();
            m_values.insert(std::exchange(m_changes, {}));
            m_writing = true;
            lock.unlock();
            const QString error = m_replace(iniText(m_values));
            lock.lock();
            m_writing = false;
            finish(error);
            m_changed.notify_all();
        }
    }

private:
    void writeAt(Clock::time_point due)
    {
        m_due = due;
        m_changed.notify_all();
    }

    void finish(const QString &error)
    {
        const bool failedBefore = std::exchange(m_failed, !error.isEmpty());
        if (m_failed && !failedBefore && !m_ended) // the log may have ended too
            qDebug() << "The settings file cannot be written:" << error;
    }

    const Replace m_replace;
    const std::chrono::milliseconds m_rest;
    IniValues m_values; ///< the writer's thread only

    std::mutex m_mutex; ///< guards the following
    std::condition_variable m_changed;
    IniValues m_changes;
    std::optional<Clock::time_point> m_due; ///< of the next write
    bool m_writing = false;
    bool m_failed = false; ///< the last write
    bool m_ended = false;
};

SettingsWriter::SettingsWriter(IniValues values, Replace replace, std::chrono::milliseconds rest)
    : m_work(std::make_shared<Work>(std::move(values), std::move(replace), rest))
    , m_thread([work = m_work] {
        QThread::currentThread()->setObjectName("settings"_L1);
        work->run();
    })
{
}

SettingsWriter::~SettingsWriter()
{
    const bool idle = flush(longestEnd);
    m_work->end();
    if (idle)
        m_thread.join();
    else
        m_thread.detach();
}

void SettingsWriter::put(const QString &key, const QVariant &value)
{
    m_work->put(key, value);
}

void SettingsWriter::startWriting()
{
    m_work->startWriting();
}

bool SettingsWriter::flush(std::chrono::milliseconds longest)
{
    m_work->startWriting();
    return m_work->waitUntilIdle(longest);
}
