#include "versionfile.h"

#include <QUrl>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView lineEnds = "\r\n";

/// The rest of `bytes` from the first byte that is not one of `these`.
QByteArrayView skip(QByteArrayView bytes, QByteArrayView these)
{
    while (!bytes.isEmpty() && these.contains(bytes.front()))
        bytes = bytes.sliced(1);
    return bytes;
}

/// The part of `bytes` before the first of `these`, or all of it.
QByteArrayView before(QByteArrayView bytes, QByteArrayView these)
{
    qsizetype count = 0;
    while (count < bytes.size() && !these.contains(bytes[count]))
        ++count;
    return bytes.first(count);
}

} // namespace

bool isUpdateHost(const QString &host)
{
    const QString name = QUrl("https://"_L1 + host).host();
    return !name.isEmpty() && !name.endsWith(".example"_L1);
}

QString installerName(const QString &version)
{
    return "Rallyvane_v"_L1 + version + "_setup.exe"_L1;
}

VersionFile readVersionFile(QByteArrayView bytes)
{
    const qsizetype separator = bytes.indexOf(versionFileSeparator);
    if (separator < 0)
        return {};
    if (bytes.indexOf(versionFileSeparator, separator + 1) < 0)
        return {.state = VersionFile::Unreadable};

    const QByteArrayView versionLine = skip(bytes.sliced(separator), "=\r\nV");
    const QByteArrayView version = before(versionLine, " ");
    if (version.size() == versionLine.size())
        return {.state = VersionFile::Unreadable};

    const QByteArrayView afterVersion = versionLine.sliced(version.size());
    const QByteArrayView restOfLine = before(afterVersion, lineEnds);
    const QByteArrayView notes = skip(afterVersion.sliced(restOfLine.size()), lineEnds);
    return {
        .state = VersionFile::Readable,
        .version = QString::fromLatin1(version),
        .notes = QString::fromLatin1(before(notes, "=")),
    };
}

int versionInHundredths(QStringView text)
{
    bool converted = false;
    const float number = text.toFloat(&converted);
    // Rejects the words "nan" and "inf". A number beyond the range of float is infinite too, but
    // `converted` is false then.
    if (std::isnan(number) || (converted && std::isinf(number)))
        return 0;
    const float hundredths = number * 100.0F;
    const float rounded = std::trunc(hundredths + std::copysign(0.5F, hundredths));
    // Powers of two are exact as floats; the largest int is not.
    if (rounded >= 0x1p31F)
        return std::numeric_limits<int>::max();
    return rounded >= -0x1p31F ? int(rounded) : std::numeric_limits<int>::min();
}
