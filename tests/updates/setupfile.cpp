#include "setupfile.h"

#include <QtEndian>

#include <algorithm>

namespace {

constexpr qsizetype fileAlignment = 512;
/// The header of the program; its optional part; the address of its only section, the resources.
constexpr qsizetype headerOffset = 0x40;
constexpr qsizetype optionalHeaderOffset = headerOffset + 24;
constexpr quint32 resourceAddress = 0x1000;

QByteArray word(quint16 value)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray longWord(qsizetype value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(quint32(value), bytes.data());
    return bytes;
}

QByteArray utf16(const QString &text)
{
    QByteArray bytes;
    for (const QChar character : text)
        bytes += word(character.unicode());
    return bytes + word(0);
}

QByteArray padded(const QByteArray &bytes, qsizetype alignment)
{
    const qsizetype size = (bytes.size() + alignment - 1) / alignment * alignment;
    return bytes.leftJustified(size, '\0');
}

/// A node of a version resource. `length` is that of its value, in characters if that is a text.
QByteArray node(const QString &name, quint16 length, bool isText, const QByteArray &content)
{
    const QByteArray head = padded(QByteArray(6, '\0') + utf16(name), 4);
    return word(quint16(head.size() + content.size())) + word(length) + word(isText)
        + head.sliced(6) + content;
}

QByteArray versionResource(const QList<QPair<QString, QString>> &strings)
{
    QByteArray table;
    for (const auto &[name, value] : strings)
        table += padded(node(name, quint16(value.size() + 1), true, utf16(value)), 4);
    const QByteArray tables = node(QStringLiteral("StringFileInfo"), 0, true,
        node(QStringLiteral("040904B0"), 0, true, table));
    constexpr quint16 fixedSize = 52;
    return node(
        QStringLiteral("VS_VERSION_INFO"), fixedSize, false, QByteArray(fixedSize, '\1') + tables);
}

/// The folder of a resource's type, name or language, of which there is one, after an icon's type.
QByteArray resourceFolder(const QList<QPair<qsizetype, qsizetype>> &entries)
{
    QByteArray folder = QByteArray(14, '\0') + word(quint16(entries.size()));
    for (const auto &[id, place] : entries)
        folder += longWord(id) + longWord(place);
    return folder;
}

QByteArray resourceSection(const QByteArray &version)
{
    constexpr qsizetype isFolder = 0x80000000;
    constexpr qsizetype names = 32;
    constexpr qsizetype languages = names + 24;
    constexpr qsizetype description = languages + 24;
    constexpr qsizetype content = description + 16;
    return resourceFolder({{3, isFolder + 0xFFFF}, {16, isFolder + names}})
        + resourceFolder({{1, isFolder + languages}}) + resourceFolder({{1033, description}})
        + longWord(resourceAddress + content) + longWord(version.size()) + QByteArray(8, '\0')
        + version;
}

} // namespace

SetupFile SetupFile::with(const QString &name, const QString &value) const
{
    SetupFile changed = *this;
    const auto found = std::ranges::find(changed.strings, name, &QPair<QString, QString>::first);
    if (found != changed.strings.end())
        found->second = value;
    else
        changed.strings.append({name, value});
    return changed;
}

QByteArray SetupFile::bytes() const
{
    const bool has64Bits = magic == "\x0B\x02";
    const qsizetype resourceEntry = has64Bits ? 128 : 112;
    constexpr quint16 optionalSize = 240;
    const QByteArray section = padded(resourceSection(versionResource(strings)), fileAlignment);

    QByteArray program = QByteArray("MZ").leftJustified(0x3C, '\0') + longWord(headerOffset);
    program += QByteArray("PE\0\0", 4) + word(0x8664) + word(1) + QByteArray(12, '\0')
        + word(optionalSize) + word(0);
    program += magic;
    program = program.leftJustified(optionalHeaderOffset + resourceEntry, '\0');
    program += longWord(resourceAddress) + longWord(section.size());
    program = program.leftJustified(optionalHeaderOffset + optionalSize, '\0');
    program += QByteArray(".rsrc\0\0\0", 8) + longWord(section.size()) + longWord(resourceAddress)
        + longWord(section.size()) + longWord(fileAlignment) + QByteArray(16, '\0');
    program = padded(program, fileAlignment) + section;

    const QByteArray content = "what is installed";
    const QByteArray archive = archiveFlags + "\xEF\xBE\xAD\xDENullsoftInst" + longWord(4)
        + longWord(28 + content.size()) + content;
    return program + archive;
}
