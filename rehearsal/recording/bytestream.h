#pragma once

#include <QByteArray>

#include <cstdint>

// Numbers as recordings keep them: small ones in few bytes, least significant part first, seven
// bits a byte; signed ones folded so that small negative ones are small too.

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
    /// A 32 bit value in four bytes.
    void word(std::uint32_t value);

private:
    QByteArray *m_bytes;
};

/// Takes values from bytes. The first one that is not there, or is not what was asked for, makes
/// the reader fail; from then on it gives zeros and its position stays.
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
    /// A number of at most `limit` in either direction.
    std::int64_t signedNumber(std::int64_t limit);
    std::uint32_t word();

    void fail() { m_failed = true; }
    bool hasFailed() const { return m_failed; }
    bool atEnd() const { return m_position == m_bytes.size(); }
    /// The offset of the next value, or of the one at which the reader failed.
    qsizetype position() const { return m_position; }

private:
    QByteArrayView m_bytes;
    qsizetype m_position;
    bool m_failed = false;
};
