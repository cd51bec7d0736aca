#pragma once

#include <QMutex>
#include <QStringList>

/// The lines that go to the debug log while this object lives, from any thread. One at a time.
class DebugLines
{
public:
    DebugLines();
    ~DebugLines();
    Q_DISABLE_COPY_MOVE(DebugLines)

    /// The lines since the last call.
    QStringList take();

private:
    static void append(QtMsgType type, const QMessageLogContext &context, const QString &line);

    static inline DebugLines *current = nullptr;
    QMutex mutex;
    QStringList lines;
    QtMessageHandler previous;
};
