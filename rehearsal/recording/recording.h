#pragma once

#include "events.h"
#include "frames.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <vector>

class ByteReader;

/// A show that was recorded, held in memory as it lies in its file. Every byte is checked when it
/// is opened, so that what it gives out afterwards is whole and in range, whatever the file holds.
/// Times count from the start of the host, in nanoseconds.
class Recording
{
public:
    struct Entry
    {
        SharedTime at;
        int zone; ///< of a frame; -1 for an event
        bool isFrame() const { return zone >= 0; }
    };

    /// Reads a file. False when there is none, or when it is damaged or no recording: `problem`
    /// then names the first byte that is wrong, and what comes before it can be used.
    bool open(const QString &path);
    /// As open, from bytes.
    bool read(const QByteArray &bytes);
    QString problem() const { return m_problem; }
    /// Whether it has its end; a host that was killed leaves a recording without.
    bool isComplete() const { return m_complete; }

    /// Frames and events in the order in which the host received them.
    qsizetype size() const { return qsizetype(m_records.size()); }
    Entry entry(qsizetype index) const;
    /// The event at an index that has one.
    Event event(qsizetype index) const;
    /// The frame at an index that has one. Fast when the next one of a zone is asked for.
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
        qsizetype content; ///< offset of what follows the time
        std::int8_t zone; ///< -1 for an event
        bool whole; ///< a frame that can be read without the one before
    };
    struct Zone
    {
        std::vector<qsizetype> frames;
        Frame frame;
        qsizetype held = -1; ///< index of the record that `frame` is; -1 = none
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
