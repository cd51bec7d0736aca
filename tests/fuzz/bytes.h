#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Reads values from a fuzzer's input; past its end it returns zeros.
class Bytes
{
public:
    Bytes(const std::uint8_t *data, std::size_t size)
        : m_data(data)
        , m_left(size)
    {
    }
    bool atEnd() const { return m_left == 0; }
    template <class T>
    T take()
    {
        T value = {};
        const std::size_t size = std::min(sizeof(T), m_left);
        if (size > 0) // the data of an empty input may be null
            std::memcpy(&value, m_data, size);
        m_data += size;
        m_left -= size;
        return value;
    }

private:
    const std::uint8_t *m_data;
    std::size_t m_left;
};
