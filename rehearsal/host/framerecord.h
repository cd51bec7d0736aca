#pragma once

#include "frames.h"

#include <QFile>

/// Writes what the host receives to a text file, in blocks of lines:
///
///     output 0.000 off
///     frame 1234.567 0 2 1
///     -32000 5000 0 FFFFFF 1
///     -32000 -5000 0 000000 3
///
/// "output": the time and "on" or "off", at the start and whenever it was switched. "frame": the
/// time at which the game sent it, the zone (from 0), the number of points, the number of frames
/// missed before it; then one line a point: x, y, z, colour in six hexadecimal digits, flags.
/// Times are milliseconds since the host started.
class FrameRecord
{
public:
    /// Makes the file anew. False when it cannot be written.
    bool open(const QString &path);
    QString errorString() const { return m_file.errorString(); }

    // These do nothing while no file is open.
    /// Begins with the time at which the host started, its output disabled.
    void begin(SharedTime start);
    void writeOutput(SharedTime time, bool on);
    void writeFrame(int zone, const Frame &frame);
    /// Writes what is still in memory. False when any of it could not be written.
    bool finish();

private:
    QByteArray sinceStart(SharedTime time) const;

    QFile m_file;
    SharedTime m_start = 0;
};
