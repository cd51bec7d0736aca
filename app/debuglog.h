#pragma once

#include <QString>
#include <QThread>

#include <memory>

class DebugLogWriter;

/// The debug log: while one exists, every message of the process is written, with its time and
/// thread, to a file and, as before, to standard error. A separate thread does the writing, so
/// neither a slow disk nor a slow terminal can block the thread that logs. A file that cannot be
/// written is not an error.
class DebugLog
{
public:
    /// Logs to `fileName`, which is rotated at `maxSize` bytes: one older file is kept, with ".1"
    /// appended to its name.
    explicit DebugLog(const QString &fileName = QStringLiteral("rallyvane.log"),
        qint64 maxSize = qint64(1024) * 1024);
    /// Writes pending lines and restores the previous message handler.
    ~DebugLog();
    DebugLog(const DebugLog &) = delete;
    DebugLog &operator=(const DebugLog &) = delete;

    /// Waits until everything logged so far is written. Any thread but the log thread.
    static void flush();

private:
    QThread m_thread;
    std::unique_ptr<DebugLogWriter> m_writer;
};
