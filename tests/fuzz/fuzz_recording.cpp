#include "bytes.h"
#include "ilda.h"
#include "playback.h"
#include "recording.h"
#include "recordingformat.h"
#include "showlog.h"
#include "textdump.h"

#include <QBuffer>
#include <QRegularExpression>

#include <cstdlib>

// Opens, plays, dumps and exports a recording with arbitrary content.
//
// If the first byte of an input is 0, the rest is the file. Otherwise the rest is records without
// checksums, each a type, a length (one byte) and the content; the checksums are added here,
// because few inputs would get past them otherwise.

namespace {

void check(bool law)
{
    if (!law)
        std::abort();
}

QByteArray fileOf(Bytes &input)
{
    QByteArray file;
    if (input.take<std::uint8_t>() == 0) {
        while (!input.atEnd())
            file += input.take<char>();
        return file;
    }
    file = QByteArray(recordingMagic, magicSize) + char(recordingVersion);
    while (!input.atEnd()) {
        QByteArray record(1, input.take<char>());
        const auto length = input.take<std::uint8_t>() & 0x7fU;
        record += static_cast<char>(length);
        for (unsigned i = 0; i < length; ++i)
            record += input.take<char>();
        const quint16 sum = qChecksum(record);
        file += record + static_cast<char>(sum & 0xff) + static_cast<char>(sum >> 8);
    }
    return file;
}

void namesTheByte(const Recording &recording, qsizetype size)
{
    static const QRegularExpression pattern(QStringLiteral("^Damaged at byte (\\d+): .+\\.$"));
    const auto match = pattern.match(recording.problem());
    check(match.hasMatch() && match.captured(1).toLongLong() <= size);
}

void useAll(Recording &recording)
{
    ShowLog log;
    for (qsizetype i = recording.size() - 1; i >= 0; --i) {
        const Recording::Entry entry = recording.entry(i);
        if (!entry.isFrame()) {
            log.note(recording.event(i));
            continue;
        }
        const Frame &frame = recording.frame(i);
        check(frame.points.size() <= std::size_t(ldbMaxPoints));
        check(frame.sentAt == entry.at);
        log.note(entry.zone, frame);
        const auto section =
            ildaSection(frame.points, {0, 1, entry.zone}, ColorOrder::RedGreenBlue);
        check(
            std::size_t(section.size()) == 32 + 8 * std::max<std::size_t>(frame.points.size(), 1));
    }
    log.report();
    QBuffer text;
    text.open(QIODevice::WriteOnly);
    check(dump(recording, true, text));

    Playback playback(recording);
    check(playback.start() <= playback.end());
    while (playback.step(1))
        check(playback.position() <= playback.end());
    while (playback.step(-1))
        check(playback.position() >= playback.start());
    playback.seek(playback.end());
    for (int zone = 0; zone < maxZones; ++zone)
        check((playback.frame(zone) != nullptr) == !recording.framesOf(zone).empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes input(data, size);
    const QByteArray file = fileOf(input);
    Recording recording;
    if (!recording.read(file))
        namesTheByte(recording, file.size());
    useAll(recording);
    return 0;
}
