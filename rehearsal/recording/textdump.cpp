#include "textdump.h"

#include <QIODevice>

namespace {

QByteArray lineOf(const LdbPoint &point)
{
    const auto color = QByteArray::number(static_cast<uint>(point.color) & 0xffffff, 16).toUpper();
    return QByteArray::number(point.x) + ' ' + QByteArray::number(point.y) + ' '
        + QByteArray::number(point.z) + ' ' + color.rightJustified(6, '0') + ' '
        + QByteArray::number(point.flags) + '\n';
}

QByteArray lineOf(const Event &event)
{
    const QByteArray at = ' ' + inMilliseconds(event.at);
    switch (event.kind) {
    case Event::HostStarted:
        return "started" + at + '\n';
    case Event::OutputEnabled:
        return "output" + at + " on\n";
    case Event::OutputDisabled:
        return "output" + at + " off\n";
    case Event::SessionOpened:
        return "opened" + at + ' ' + QByteArray::number(event.process) + '\n';
    case Event::SessionClosed:
        return "closed" + at + '\n';
    case Event::GameGone:
        return "gone" + at + '\n';
    case Event::HostEnded:
        return "ended" + at + '\n';
    }
    return {};
}

QByteArray lineOf(int zone, const Frame &frame)
{
    return "frame " + inMilliseconds(frame.sentAt) + ' ' + QByteArray::number(zone) + ' '
        + QByteArray::number(qulonglong(frame.points.size())) + ' '
        + QByteArray::number(qulonglong(frame.missed)) + '\n';
}

} // namespace

bool dump(Recording &recording, bool points, QIODevice &to)
{
    for (qsizetype i = 0; i < recording.size(); ++i) {
        const Recording::Entry entry = recording.entry(i);
        QByteArray text;
        if (entry.isFrame()) {
            const Frame &frame = recording.frame(i);
            text = lineOf(entry.zone, frame);
            for (std::size_t j = 0; points && j < frame.points.size(); ++j)
                text += lineOf(frame.points[j]);
        } else {
            text = lineOf(recording.event(i));
        }
        if (to.write(text) != text.size())
            return false;
    }
    return true;
}
