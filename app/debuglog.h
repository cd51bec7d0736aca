#pragma once

#include <QString>
#include <QThread>

#include <memory>

class DebugLogWriter;

/// The debug log: while one exists, every debug line of the process goes, with time and thread,
/// into a file and, as before, to the standard error stream. A thread of its own writes, so that
/// no disk and no terminal ever holds up the thread that logs. A file that cannot be written is
/// no error.
class DebugLog
{
public:
    /// Logs into `fileName`, which is turned over at `maxSize` bytes: one older file is kept,
    /// with ".1" after its name.
    explicit DebugLog(const QString &fileName = QStringLiteral("rallyvane.log"),
        qint64 maxSize = qint64(1024) * 1024);
    /// Writes out what was logged and gives the lines back to whom they went before.
    ~DebugLog();
    DebugLog(const DebugLog &) = delete;
    DebugLog &operator=(const DebugLog &) = delete;

    /// Waits until all that was logged so far is written. Any thread but the writing one.
    static void flush();

private:
    QThread m_thread;
    std::unique_ptr<DebugLogWriter> m_writer;
};
