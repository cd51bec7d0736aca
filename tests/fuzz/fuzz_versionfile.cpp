#include "versionfile.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// Whether `version` is safe in a URL, in a file name and at the start of a text that Qt might
/// detect as HTML.
bool isHarmless(const QString &version)
{
    return std::ranges::all_of(version, [](QChar character) {
        return character.isSpace() || QStringLiteral("0123456789.+-eE").contains(character);
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView bytes(data, qsizetype(size));
    const VersionFile file = readVersionFile(bytes);
    require(
        file.state == VersionFile::Readable || (file.version.isEmpty() && file.notes.isEmpty()));
    require(file.version.size() + file.notes.size() <= bytes.size());
    require(!file.version.contains(u' '));
    require(!file.notes.contains(u'='));
    if (versionInHundredths(file.version) > 0)
        require(isHarmless(file.version));
    const QString text = QString::fromLatin1(bytes);
    if (versionInHundredths(text) > 0)
        require(isHarmless(text));
    return 0;
}
