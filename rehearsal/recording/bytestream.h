#pragma once

#include <QByteArray>

#include <cstdint>

// Variable-length numbers, seven bits per byte, least significant first. Signed numbers are
// zigzag-encoded, so that small negative ones are short too.

/// Appends values to bytes.
class ByteWriter
{
public:
    explicit ByteWriter(QByteArray &bytes)
        : m_bytes(&bytes)
    {
    }

    void byte(std::uint8_t value) { m_bytes->append(static_cast<char>(value)); }
    void number(std::uint64_t value);
    void signedNumber(std::int64_t value);
    /// A 32-bit value in four bytes.
    void word(std::uint32_t value);

private:
    QByteArray *m_bytes;
};

/// Reads values from bytes. The first missing or invalid value makes the reader fail: from then on
/// it returns zeros and its position does not change.
class ByteReader
{
public:
    explicit ByteReader(QByteArrayView bytes, qsizetype position = 0)
        : m_bytes(bytes)
        , m_position(position)
    {
    }

    std::uint8_t byte();
    /// A number of at most `limit`.
    std::uint64_t number(std::uint64_t limit);
    /// A number from -limit to limit.
    std::int64_t signedNumber(std::int64_t limit);
    std::uint32_t word();

    void fail() { m_failed = true; }
    bool hasFailed() const { return m_failed; }
    bool atEnd() const { return m_position == m_bytes.size(); }
    /// The offset of the next value, or of the one that made the reader fail.
    qsizetype position() const { return m_position; }

private:
    QByteArrayView m_bytes;
    qsizetype m_position;
    bool m_failed = false;
};
