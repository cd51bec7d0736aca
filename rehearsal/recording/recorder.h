#pragma once

#include "events.h"
#include "frames.h"

#include <QFile>

#include <array>

class ByteWriter;

/// Writes a show to a file: every frame that the host receives and every event, with its time in
/// microseconds since the host started. The file can be read while it grows and stays readable if
/// the host is killed. Recording reads it.
///
/// The file begins with recordingMagic and recordingVersion (one byte). Records follow: a type (one
/// byte), the length of the content (a number as ByteWriter writes it), the content, and the
/// checksum of all three (CRC-16 of ISO 3309, two bytes, little-endian). Contents:
///
///     WholeFrame, ChangedFrame   time, zone, frames missed before it, points
///     Happening                  time, kind, process id
///     End                        number of records before it
///
/// Times are relative to the record before. A changed frame is coded relative to the previous frame
/// of its zone; a whole frame is self-contained. Every wholeFrameInterval-th frame of a zone is
/// whole.
class Recorder
{
public:
    /// Creates or overwrites the file. False if it cannot be written.
    bool open(const QString &path);
    bool isOpen() const { return m_file.isOpen(); }
    /// Whether any of it could not be written; errorString says why.
    bool hasFailed() const { return !m_error.isEmpty(); }
    QString errorString() const { return m_error; }
    /// The file that was opened last.
    QString path() const { return m_file.fileName(); }

    // The functions below do nothing while no file is open.
    /// Begins the recording; all times count from `start`.
    void begin(SharedTime start);
    void write(const Event &event);
    void write(int zone, const Frame &frame);
    /// Writes the buffered records to the file; only whole records are written.
    void flush();
    /// Marks the recording as complete and closes it. False if any write has failed.
    bool finish();

private:
    void writeTime(ByteWriter &to, SharedTime time);
    void append(std::uint8_t type);
    void noteError();

    struct Zone
    {
        std::vector<LdbPoint> points; ///< of the frame before
        int changedFrames = 0; ///< since the last whole one
        bool begun = false;
    };

    QFile m_file;
    QByteArray m_content;
    QByteArray m_pending;
    std::array<Zone, maxZones> m_zones;
    std::uint64_t m_records = 0;
    SharedTime m_start = 0;
    SharedTime m_last = 0; ///< microseconds of the record before
    QString m_error;
};
