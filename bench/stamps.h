#pragma once

#include <QFile>
#include <QtGlobal>

/// Times of something that happens again and again, in a file that the environment names and
/// whoever measures has made and filled with zeros. Stamping is one store: nothing is written
/// out, and what was stamped outlives the process however it ends. One thread at a time.
class Stamps
{
public:
    /// The environment variable that names the file. Without it nothing is stamped.
    static constexpr const char *variable = "RALLYVANE_BENCH_STAMPS";

    Stamps();
    /// Remembers now, in nanoseconds of the machine's steady clock, while there is room.
    void stamp();

private:
    QFile m_file;
    qint64 *m_next = nullptr;
    qint64 *m_end = nullptr;
};
