#include "installerfile.h"

#include "versionstrings.h"

#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

/// The header of the archive that NSIS appends to its program, at a multiple of 512 bytes: flags,
/// a signature, and the size of the archive with this header.
constexpr qsizetype archiveStep = 512;
constexpr qsizetype archiveHeaderSize = 28;
constexpr QByteArrayView archiveSignature = "\xEF\xBE\xAD\xDENullsoftInst";
constexpr quint32 uninstallerFlag = 1;

/// Why the archive is not that of an installer, or empty.
QString archiveFault(QByteArrayView bytes)
{
    for (qsizetype at = 0; at + archiveHeaderSize <= bytes.size(); at += archiveStep) {
        if (!bytes.sliced(at + 4).startsWith(archiveSignature))
            continue;
        if (qFromLittleEndian<quint32>(bytes.data() + at) & uninstallerFlag)
            return u"it is an uninstaller"_s;
        if (qFromLittleEndian<quint32>(bytes.data() + at + 24) > bytes.size() - at)
            return u"it is truncated"_s;
        return {};
    }
    return u"it installs nothing"_s;
}

} // namespace

InstallerFile readInstaller(QByteArrayView bytes)
{
    const QMap<QString, QString> strings = versionStrings(bytes);
    if (strings.isEmpty())
        return {.fault = u"it is not a Windows program with a version"_s};
    if (strings.value(u"ProductName"_s) != "Laser Rallyvane"_L1)
        return {.fault = u"it is another program"_s};
    return {.fault = archiveFault(bytes),
        .version = strings.value(u"ProductVersion"_s),
        .updateHost = strings.value(u"UpdateHost"_s)};
}
