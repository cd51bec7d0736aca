#include "bytestream.h"

namespace {

constexpr std::uint64_t sevenBits = 0x7f;
constexpr std::uint8_t more = 0x80;

} // namespace

void ByteWriter::number(std::uint64_t value)
{
    for (; value > sevenBits; value >>= 7U)
        byte(static_cast<std::uint8_t>(value & sevenBits) | more);
    byte(static_cast<std::uint8_t>(value));
}

void ByteWriter::signedNumber(std::int64_t value)
{
    number(static_cast<std::uint64_t>(value) << 1U ^ static_cast<std::uint64_t>(value >> 63));
}

void ByteWriter::word(std::uint32_t value)
{
    for (int i = 0; i < 4; ++i, value >>= 8U)
        byte(static_cast<std::uint8_t>(value));
}

std::uint8_t ByteReader::byte()
{
    if (m_failed || atEnd()) {
        fail();
        return 0;
    }
    return static_cast<std::uint8_t>(m_bytes[m_position++]);
}

std::uint64_t ByteReader::number(std::uint64_t limit)
{
    const qsizetype start = m_position;
    std::uint64_t value = 0;
    for (unsigned shift = 0; shift < 64 && !m_failed; shift += 7) {
        const std::uint8_t part = byte();
        value |= (part & sevenBits) << shift;
        if ((part & more) != 0)
            continue;
        if (m_failed || value > limit || (shift == 63 && part > 1))
            break;
        return value;
    }
    fail();
    m_position = start;
    return 0;
}

std::int64_t ByteReader::signedNumber(std::int64_t limit)
{
    const std::uint64_t folded = number(2 * static_cast<std::uint64_t>(limit));
    return static_cast<std::int64_t>(folded >> 1U) ^ -static_cast<std::int64_t>(folded & 1U);
}

std::uint32_t ByteReader::word()
{
    std::uint32_t value = 0;
    for (unsigned i = 0; i < 4; ++i)
        value |= static_cast<std::uint32_t>(byte()) << 8 * i;
    return value;
}
