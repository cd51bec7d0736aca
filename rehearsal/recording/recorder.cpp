#include "recorder.h"

#include "framecoding.h"
#include "recordingformat.h"

#include <algorithm>

bool Recorder::open(const QString &path)
{
    m_file.setFileName(path);
    m_error.clear();
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        noteError();
        return false;
    }
    m_pending = QByteArray(recordingMagic, magicSize) + static_cast<char>(recordingVersion);
    m_zones = {};
    m_records = 0;
    m_last = 0;
    flush();
    if (hasFailed())
        m_file.close();
    return !hasFailed();
}

void Recorder::begin(SharedTime start)
{
    m_start = start;
}

void Recorder::write(const Event &event)
{
    if (!isOpen())
        return;
    ByteWriter content(m_content);
    writeTime(content, event.at);
    content.byte(event.kind);
    content.number(event.process);
    append(static_cast<std::uint8_t>(RecordType::Happening));
}

void Recorder::write(int zone, const Frame &frame)
{
    if (!isOpen())
        return;
    Zone &of = m_zones.at(static_cast<std::size_t>(zone));
    const bool whole = !of.begun || of.changedFrames + 1 >= wholeFrameInterval;
    ByteWriter content(m_content);
    writeTime(content, frame.sentAt);
    content.byte(static_cast<std::uint8_t>(zone));
    content.number(std::min(frame.missed, mostMissed));
    writePoints(content, frame.points, whole ? std::vector<LdbPoint>() : of.points);
    append(static_cast<std::uint8_t>(whole ? RecordType::WholeFrame : RecordType::ChangedFrame));
    of.points = frame.points;
    of.changedFrames = whole ? 0 : of.changedFrames + 1;
    of.begun = true;
}

void Recorder::flush()
{
    if (!isOpen())
        return;
    // A disk that gets full takes a part, and says why only when it is offered the rest. Behind a
    // part of a record, whole ones would be of no use.
    for (qsizetype done = 0; !hasFailed() && done < m_pending.size();) {
        const qint64 written = m_file.write(m_pending.constData() + done, m_pending.size() - done);
        if (written > 0)
            done += written;
        else
            noteError();
    }
    m_pending.clear();
}

bool Recorder::finish()
{
    if (!isOpen())
        return !hasFailed();
    ByteWriter(m_content).number(m_records);
    append(static_cast<std::uint8_t>(RecordType::End));
    flush();
    m_file.close();
    if (m_file.error() != QFileDevice::NoError)
        noteError();
    return !hasFailed();
}

/// The first one; closing the file would forget it.
void Recorder::noteError()
{
    if (m_error.isEmpty())
        m_error = m_file.errorString();
}

void Recorder::writeTime(ByteWriter &to, SharedTime time)
{
    const SharedTime now = std::clamp((time - m_start) / 1000, -longestShow, longestShow);
    to.signedNumber(now - m_last);
    m_last = now;
}

void Recorder::append(std::uint8_t type)
{
    QByteArray record;
    ByteWriter head(record);
    head.byte(type);
    head.number(static_cast<std::uint64_t>(m_content.size()));
    record += m_content;
    const quint16 sum = qChecksum(record);
    head.byte(static_cast<std::uint8_t>(sum & 0xff));
    head.byte(static_cast<std::uint8_t>(sum >> 8));
    m_pending += record;
    m_content.clear();
    ++m_records;
}
