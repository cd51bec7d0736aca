#pragma once

#include <QString>
#include <QStringList>

#include <mutex>
#include <utility>

/// Takes the debug lines of this process, from every thread, until it is destroyed. One at a time.
class DebugLines
{
public:
    DebugLines()
    {
        current = this;
        m_previous = qInstallMessageHandler(&DebugLines::take);
    }
    ~DebugLines()
    {
        qInstallMessageHandler(m_previous);
        current = nullptr;
    }
    DebugLines(const DebugLines &) = delete;
    DebugLines &operator=(const DebugLines &) = delete;

    /// The lines since the last take. Warnings and worse are among them.
    QStringList takeAll()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_lines, {});
    }

private:
    static void take(QtMsgType, const QMessageLogContext &, const QString &line)
    {
        const std::lock_guard lock(current->m_mutex);
        current->m_lines.append(line);
    }

    static inline DebugLines *current = nullptr;
    QtMessageHandler m_previous;
    std::mutex m_mutex;
    QStringList m_lines;
};
