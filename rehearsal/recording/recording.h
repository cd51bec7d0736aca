#pragma once

#include "events.h"
#include "frames.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <vector>

class ByteReader;

/// A recorded show, held in memory in its file format. Every byte is checked on opening, so that
/// everything it returns is valid, whatever the file holds. Times are nanoseconds since the host
/// started.
class Recording
{
public:
    struct Entry
    {
        SharedTime at;
        int zone; ///< of a frame; -1 for an event
        bool isFrame() const { return zone >= 0; }
    };

    /// Reads a file. False if it is missing, damaged or not a recording: `problem` then names the
    /// first wrong byte, and everything before it can be used.
    bool open(const QString &path);
    /// As open, from bytes.
    bool read(const QByteArray &bytes);
    QString problem() const { return m_problem; }
    /// Whether it has an end record; a host that was killed writes none.
    bool isComplete() const { return m_complete; }

    /// Frames and events in the order in which the host received them.
    qsizetype size() const { return qsizetype(m_records.size()); }
    Entry entry(qsizetype index) const;
    /// The event at an index, which must be that of an event.
    Event event(qsizetype index) const;
    /// The frame at an index, which must be that of a frame. Fast for the next frame of a zone.
    const Frame &frame(qsizetype index);
    /// The indexes of a zone's frames, ascending.
    const std::vector<qsizetype> &framesOf(int zone) const
    {
        return m_zones.at(std::size_t(zone)).frames;
    }

private:
    struct Record
    {
        SharedTime at;
        qsizetype content; ///< offset of the content after the time
        std::int8_t zone; ///< -1 for an event
        bool whole; ///< a frame that does not depend on the one before
    };
    struct Zone
    {
        std::vector<qsizetype> frames;
        Frame frame;
        qsizetype held = -1; ///< index of the record decoded in `frame`; -1 = none
    };

    bool readAll();
    bool readRecord(ByteReader &from);
    bool readContent(std::uint8_t type, ByteReader &from);
    int readFrame(ByteReader &from, bool whole);
    bool readEnd(ByteReader &from);
    bool damaged(qsizetype byte, const QString &what);
    void decode(const Record &record, Frame &frame) const;

    QByteArray m_bytes;
    QString m_problem;
    bool m_complete = false;
    SharedTime m_last = 0;
    std::vector<Record> m_records;
    std::array<Zone, maxZones> m_zones;
};
