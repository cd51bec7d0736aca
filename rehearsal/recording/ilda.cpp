#include "ilda.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace {

constexpr std::uint8_t trueColorFormat = 5;
constexpr std::uint8_t lastPoint = 0x80;
constexpr std::uint8_t blanked = 0x40;

void appendShort(QByteArray &to, int value)
{
    const quint16 bigEndian = qToBigEndian(static_cast<quint16>(value));
    to.append(reinterpret_cast<const char *>(&bigEndian), sizeof bigEndian);
}

void appendByte(QByteArray &to, unsigned value)
{
    to.append(static_cast<char>(value & 0xff));
}

/// The header of a section, 32 bytes.
QByteArray headerOf(const IldaFrame &frame, int points)
{
    QByteArray header("ILDA");
    header.append(3, '\0');
    appendByte(header, trueColorFormat);
    header += "Show    "; // name of the frame and of the company, eight bytes each
    header += "Rallyvan";
    appendShort(header, points);
    appendShort(header, frame.number);
    appendShort(header, frame.total);
    appendByte(header, static_cast<unsigned>(frame.projector));
    appendByte(header, 0);
    return header;
}

int place(float value)
{
    return static_cast<int>(std::lround(std::clamp(double(value), -32768.0, 32767.0)));
}

void appendPoint(
    QByteArray &to, int x, int y, std::uint32_t color, std::uint8_t status, ColorOrder order)
{
    appendShort(to, x);
    appendShort(to, y);
    appendByte(to, status);
    const std::uint32_t high = color >> 16;
    const bool redHigh = order == ColorOrder::RedGreenBlue;
    appendByte(to, redHigh ? color : high); // blue
    appendByte(to, color >> 8);
    appendByte(to, redHigh ? high : color); // red
}

/// "show.ild", "show-2.ild", ...
QString pathOf(const QString &path, qsizetype file)
{
    if (file == 0)
        return path;
    const QFileInfo info(path);
    const QString suffix = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    return info.dir().filePath(
        QStringLiteral("%1-%2%3").arg(info.completeBaseName()).arg(file + 1).arg(suffix));
}

} // namespace

QByteArray ildaSection(
    const std::vector<LdbPoint> &points, const IldaFrame &frame, ColorOrder order)
{
    const std::vector<LdbPoint> shown = points.empty() ? std::vector<LdbPoint>(1) : points;
    QByteArray section = headerOf(frame, static_cast<int>(shown.size()));
    int x = 0;
    int y = 0;
    for (const LdbPoint &point : shown) {
        if (std::isfinite(point.x) && std::isfinite(point.y)) {
            x = place(point.x);
            y = place(point.y);
        }
        const unsigned status =
            (&point == &shown.back() ? lastPoint : 0U) | (isLit(point) ? 0U : blanked);
        appendPoint(section, x, y, static_cast<std::uint32_t>(point.color),
            static_cast<std::uint8_t>(status), order);
    }
    return section;
}

QByteArray ildaEnd()
{
    return headerOf({0, 0, 0}, 0);
}

QStringList exportIlda(Recording &recording, int zone, ColorOrder order, const QString &path,
    QString &problem, qsizetype framesPerFile)
{
    const auto tr = [](const char *text) { return QCoreApplication::translate("Ilda", text); };
    const std::vector<qsizetype> &frames = recording.framesOf(zone);
    const auto count = static_cast<qsizetype>(frames.size());
    if (count == 0) {
        problem = tr("Zone %1 has no frames.").arg(zone + 1);
        return {};
    }
    QStringList files;
    for (qsizetype first = 0; first < count; first += framesPerFile) {
        const qsizetype total = std::min(framesPerFile, count - first);
        files.append(pathOf(path, files.size()));
        QSaveFile file(files.last());
        bool written = file.open(QIODevice::WriteOnly);
        for (qsizetype i = 0; written && i < total; ++i) {
            const QByteArray section =
                ildaSection(recording.frame(frames[std::size_t(first + i)]).points,
                    {static_cast<int>(i), static_cast<int>(total), zone}, order);
            written = file.write(section) == section.size();
        }
        if (!written || file.write(ildaEnd()) < 0 || !file.commit()) {
            problem = tr("Cannot write \"%1\": %2").arg(file.fileName(), file.errorString());
            return {};
        }
    }
    return files;
}
