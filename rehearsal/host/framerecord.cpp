#include "framerecord.h"

#include <QByteArray>

namespace {

QByteArray lineOf(const LdbPoint &point)
{
    const auto color = QByteArray::number(static_cast<uint>(point.color) & 0xffffff, 16).toUpper();
    return QByteArray::number(point.x) + ' ' + QByteArray::number(point.y) + ' '
        + QByteArray::number(point.z) + ' ' + color.rightJustified(6, '0') + ' '
        + QByteArray::number(point.flags) + '\n';
}

} // namespace

bool FrameRecord::open(const QString &path)
{
    m_file.setFileName(path);
    return m_file.open(QIODevice::WriteOnly | QIODevice::Truncate);
}

void FrameRecord::begin(SharedTime start)
{
    m_start = start;
    writeOutput(start, false);
}

void FrameRecord::writeOutput(SharedTime time, bool on)
{
    if (m_file.isOpen())
        m_file.write("output " + sinceStart(time) + (on ? " on\n" : " off\n"));
}

void FrameRecord::writeFrame(int zone, const Frame &frame)
{
    if (!m_file.isOpen())
        return;
    QByteArray block = "frame " + sinceStart(frame.sentAt) + ' ' + QByteArray::number(zone) + ' '
        + QByteArray::number(frame.points.size()) + ' ' + QByteArray::number(frame.missed) + '\n';
    for (const LdbPoint &point : frame.points)
        block += lineOf(point);
    m_file.write(block);
}

bool FrameRecord::finish()
{
    return !m_file.isOpen() || (m_file.flush() && m_file.error() == QFileDevice::NoError);
}

QByteArray FrameRecord::sinceStart(SharedTime time) const
{
    const double nanoseconds = static_cast<double>(time) - static_cast<double>(m_start);
    return QByteArray::number(nanoseconds / 1e6, 'f', 3);
}
