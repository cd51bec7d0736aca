#pragma once

#include <QFile>
#include <QtGlobal>

/// Timestamps of a repeated event, in a file that the measuring program has created and zeroed. The
/// file is mapped, so recording is a single store and survives the process however it ends. One
/// thread at a time.
class Stamps
{
public:
    /// The environment variable with the file's name. Without it nothing is recorded.
    static constexpr const char *variable = "RALLYVANE_BENCH_STAMPS";

    Stamps();
    /// Records the steady clock's time in nanoseconds, while there is room.
    void stamp();

private:
    QFile m_file;
    qint64 *m_next = nullptr;
    qint64 *m_end = nullptr;
};
