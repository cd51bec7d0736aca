#pragma once

#include <QString>
#include <QStringList>

#include <mutex>
#include <utility>

/// Captures the debug lines of this process, from all threads, until destroyed. One at a time.
class DebugLines
{
public:
    /// Whether warnings and worse are captured too, or passed on to the previous handler.
    enum Kind { AllLines, DebugOnly };

    explicit DebugLines(Kind kind = AllLines)
        : m_kind(kind)
    {
        current = this;
        // Only now may lines arrive. NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer)
        m_previous = qInstallMessageHandler(&DebugLines::take);
    }
    ~DebugLines()
    {
        qInstallMessageHandler(m_previous);
        current = nullptr;
    }
    DebugLines(const DebugLines &) = delete;
    DebugLines &operator=(const DebugLines &) = delete;

    /// The lines since the last take.
    QStringList takeAll()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_lines, {});
    }

private:
    static void take(QtMsgType type, const QMessageLogContext &context, const QString &line)
    {
        if (type != QtDebugMsg && current->m_kind == DebugOnly) {
            current->m_previous(type, context, line);
            return;
        }
        const std::lock_guard lock(current->m_mutex);
        current->m_lines.append(line);
    }

    static inline DebugLines *current = nullptr;
    Kind m_kind;
    QtMessageHandler m_previous;
    std::mutex m_mutex;
    QStringList m_lines;
};
