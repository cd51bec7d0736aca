#include "debuglines.h"

#include <utility>

DebugLines::DebugLines()
    : previous(qInstallMessageHandler(append))
{
    current = this;
}

DebugLines::~DebugLines()
{
    qInstallMessageHandler(previous);
    current = nullptr;
}

QStringList DebugLines::take()
{
    const QMutexLocker lock(&mutex);
    return std::exchange(lines, {});
}

void DebugLines::append(QtMsgType type, const QMessageLogContext &context, const QString &line)
{
    if (!current)
        return;
    if (type != QtDebugMsg) {
        current->previous(type, context, line);
        return;
    }
    const QMutexLocker lock(&current->mutex);
    current->lines += line;
}
