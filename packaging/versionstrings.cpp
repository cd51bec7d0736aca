// Follows Microsoft's documentation of the Portable Executable format and of VS_VERSIONINFO. All
// numbers are little-endian.

#include "versionstrings.h"

#include <QtEndian>

#include <algorithm>
#include <optional>

namespace {

/// The number at `offset`; 0 if it is not completely inside.
template <class T>
T number(QByteArrayView bytes, qint64 offset)
{
    if (offset < 0 || offset > bytes.size() - qint64(sizeof(T)))
        return 0;
    return qFromLittleEndian<T>(bytes.data() + offset);
}

/// At most `size` bytes from `offset` on; fewer at the end.
QByteArrayView part(QByteArrayView bytes, qint64 offset, qint64 size)
{
    if (offset < 0 || offset >= bytes.size())
        return {};
    return bytes.sliced(offset, std::min(size, bytes.size() - offset));
}

/// A program that is loaded at address 0.
class Image
{
public:
    explicit Image(QByteArrayView file)
        : m_file(file)
        , m_header(number<quint32>(file, 0x3C))
    {
    }
    bool isValid() const
    {
        return m_file.startsWith("MZ") && part(m_file, m_header, 4) == QByteArrayView("PE\0\0", 4);
    }
    /// Where the resources are; 0 if there are none.
    quint32 resources() const
    {
        constexpr quint16 magicOf64Bits = 0x20B;
        const bool has64Bits = number<quint16>(m_file, optionalHeader()) == magicOf64Bits;
        return number<quint32>(m_file, optionalHeader() + (has64Bits ? 128 : 112));
    }
    /// At most `size` bytes at an address.
    QByteArrayView at(quint32 address, qint64 size) const
    {
        const auto count = number<quint16>(m_file, m_header + 6);
        qint64 section = optionalHeader() + number<quint16>(m_file, m_header + 20);
        for (int i = 0; i < count; ++i, section += 40) {
            const qint64 offset = qint64(address) - number<quint32>(m_file, section + 12);
            const auto sizeInFile = number<quint32>(m_file, section + 16);
            if (offset >= 0 && offset < sizeInFile)
                return part(m_file, number<quint32>(m_file, section + 20) + offset,
                    std::min(size, sizeInFile - offset));
        }
        return {};
    }

private:
    qint64 optionalHeader() const { return m_header + 24; }

    QByteArrayView m_file;
    qint64 m_header;
};

/// Where the entry of `folder`, a folder of `resources`, leads: the one with the number `id`, or
/// the first one. The highest bit of a folder's place is set.
std::optional<quint32> entry(
    QByteArrayView resources, quint32 folder, std::optional<quint32> id = {})
{
    const int count =
        number<quint16>(resources, folder + 12LL) + number<quint16>(resources, folder + 14LL);
    for (int i = 0; i < count; ++i) {
        const qint64 offset = folder + 16LL + 8LL * i;
        if (!id || number<quint32>(resources, offset) == *id)
            return number<quint32>(resources, offset + 4);
    }
    return {};
}

/// The version resource: its type's folder contains the folder of its name, which contains it in
/// one language.
QByteArrayView versionResource(const Image &image)
{
    constexpr quint32 versionType = 16;
    constexpr quint32 folderBit = 0x80000000;
    const QByteArrayView resources = image.at(image.resources(), image.resources() ? 1 << 24 : 0);
    std::optional<quint32> place = entry(resources, 0, versionType);
    for (int level = 0; level < 2 && place; ++level)
        place = entry(resources, *place & ~folderBit);
    if (!place)
        return {};
    return image.at(number<quint32>(resources, *place), number<quint32>(resources, *place + 4LL));
}

/// The UTF-16 text at `offset`, up to its zero.
QString text(QByteArrayView bytes, qint64 offset)
{
    QString result;
    while (const auto character = number<quint16>(bytes, offset)) {
        result += QChar(character);
        offset += 2;
    }
    return result;
}

qint64 aligned(qint64 offset)
{
    return (offset + 3) & ~qint64(3);
}

/// Adds the strings of the nodes in `nodes`: each has its size, that of its value and whether that
/// is a text, then its name, its value and further nodes. Strings are three levels below the root.
void addStrings(QMap<QString, QString> &strings, QByteArrayView nodes, int level)
{
    while (const auto size = number<quint16>(nodes, 0)) {
        const QByteArrayView node = part(nodes, 0, size);
        const QString name = text(node, 6);
        const qint64 value = aligned(6 + 2 * (name.size() + 1));
        const bool isText = number<quint16>(node, 4) != 0;
        const qint64 valueSize = qint64(number<quint16>(node, 2)) * (isText ? 2 : 1);
        if (level == 3)
            strings.insert(name, text(part(node, value, valueSize), 0));
        else
            addStrings(strings, part(node, aligned(value + valueSize), size), level + 1);
        nodes = part(nodes, aligned(size), nodes.size());
    }
}

} // namespace

QMap<QString, QString> versionStrings(QByteArrayView file)
{
    const Image image(file);
    QMap<QString, QString> strings;
    if (image.isValid())
        addStrings(strings, versionResource(image), 0);
    return strings;
}
