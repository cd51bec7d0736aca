#include "recording.h"

#include "framecoding.h"
#include "recordingformat.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>

namespace {

constexpr std::uint64_t anyNumber = ~std::uint64_t(0);

QString tr(const char *text)
{
    return QCoreApplication::translate("Recording", text);
}

/// Reads the zone and the count of missed frames, which precede the points.
std::uint64_t readHead(ByteReader &from, int &zone)
{
    zone = from.byte();
    if (zone >= maxZones)
        from.fail();
    return from.number(mostMissed);
}

} // namespace

bool Recording::open(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        read({});
        m_problem = tr("Cannot read \"%1\": %2").arg(path, file.errorString());
        return false;
    }
    if (read(file.readAll()))
        return true;
    m_problem = tr("\"%1\": %2").arg(path, m_problem);
    return false;
}

bool Recording::read(const QByteArray &bytes)
{
    *this = {};
    m_bytes = bytes;
    return readAll();
}

Recording::Entry Recording::entry(qsizetype index) const
{
    const Record &record = m_records[std::size_t(index)];
    return {record.at, record.zone};
}

Event Recording::event(qsizetype index) const
{
    const Record &record = m_records[std::size_t(index)];
    ByteReader content(m_bytes, record.content);
    const auto kind = static_cast<Event::Kind>(content.byte());
    return {kind, record.at, content.number(anyNumber)};
}

const Frame &Recording::frame(qsizetype index)
{
    const Record &record = m_records[std::size_t(index)];
    Zone &zone = m_zones.at(std::size_t(record.zone));
    const auto wanted = std::ranges::lower_bound(zone.frames, index);
    if (zone.held == index)
        return zone.frame;
    auto next = wanted;
    while (!m_records[std::size_t(*next)].whole
        && (next == zone.frames.begin() || *(next - 1) != zone.held))
        --next;
    for (; next <= wanted; ++next)
        decode(m_records[std::size_t(*next)], zone.frame);
    zone.held = index;
    return zone.frame;
}

bool Recording::readAll()
{
    const QByteArrayView magic(recordingMagic, magicSize);
    if (!QByteArrayView(m_bytes).startsWith(magic)) {
        qsizetype same = 0;
        while (same < m_bytes.size() && m_bytes[same] == magic[same])
            ++same;
        return damaged(same, tr("this is not a recording of a rehearsal"));
    }
    ByteReader from(m_bytes, magicSize);
    if (from.byte() != recordingVersion)
        return damaged(magicSize, tr("this recording has another version"));
    while (!from.atEnd() && !m_complete) {
        if (!readRecord(from))
            return false;
    }
    return from.atEnd() || damaged(from.position(), tr("there is data after the end"));
}

bool Recording::readRecord(ByteReader &from)
{
    const qsizetype start = from.position();
    const std::uint8_t type = from.byte();
    const auto length =
        static_cast<qsizetype>(from.number(static_cast<std::uint64_t>(m_bytes.size())));
    const qsizetype content = from.position();
    constexpr qsizetype sumSize = 2;
    if (from.hasFailed() || m_bytes.size() - content < length + sumSize)
        return damaged(start, tr("the record that begins here is truncated"));
    const qsizetype end = content + length;
    ByteReader sum(m_bytes, end);
    const unsigned low = sum.byte();
    if ((low | static_cast<unsigned>(sum.byte()) << 8U)
        != qChecksum(QByteArrayView(m_bytes).sliced(start, end - start)))
        return damaged(start, tr("the record that begins here has a wrong checksum"));

    ByteReader in(QByteArrayView(m_bytes).first(end), content);
    if (!readContent(type, in) || in.hasFailed() || !in.atEnd())
        return damaged(in.position(), tr("a record has invalid content"));
    from = ByteReader(m_bytes, end + sumSize);
    return true;
}

bool Recording::readContent(std::uint8_t type, ByteReader &from)
{
    if (type == static_cast<std::uint8_t>(RecordType::End))
        return readEnd(from);
    const bool whole = type == static_cast<std::uint8_t>(RecordType::WholeFrame);
    const bool isFrame = whole || type == static_cast<std::uint8_t>(RecordType::ChangedFrame);
    if (!isFrame && type != static_cast<std::uint8_t>(RecordType::Happening))
        return false;
    const SharedTime at = m_last + from.signedNumber(2 * longestShow);
    if (std::abs(at) > longestShow)
        return false;
    const qsizetype content = from.position();
    const int zone = isFrame ? readFrame(from, whole) : -1;
    if (!isFrame) {
        if (from.byte() >= Event::kinds)
            return false;
        from.number(anyNumber);
    }
    if (from.hasFailed() || !from.atEnd())
        return false;
    if (isFrame)
        m_zones.at(std::size_t(zone)).frames.push_back(size());
    m_records.push_back({at * 1000, content, static_cast<std::int8_t>(zone), whole});
    m_last = at;
    return true;
}

/// Reads a frame from after its time and returns its zone, whose `frame` must hold the previous
/// one.
int Recording::readFrame(ByteReader &from, bool whole)
{
    int zone = 0;
    readHead(from, zone);
    if (from.hasFailed())
        return 0;
    Zone &of = m_zones.at(std::size_t(zone));
    if (whole)
        of.frame.points.clear();
    else if (of.frames.empty())
        from.fail();
    readPoints(from, of.frame.points);
    return zone;
}

bool Recording::readEnd(ByteReader &from)
{
    m_complete = from.number(anyNumber) == m_records.size() && !from.hasFailed();
    return m_complete;
}

bool Recording::damaged(qsizetype byte, const QString &what)
{
    m_problem = tr("Damaged at byte %1: %2.").arg(byte).arg(what);
    return false;
}

void Recording::decode(const Record &record, Frame &frame) const
{
    int zone = 0;
    ByteReader content(m_bytes, record.content);
    frame.sentAt = record.at;
    frame.missed = readHead(content, zone);
    if (record.whole)
        frame.points.clear();
    readPoints(content, frame.points);
}
