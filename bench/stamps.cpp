#include "stamps.h"

#include <chrono>

Stamps::Stamps()
    : m_file(qEnvironmentVariable(variable))
{
    if (m_file.fileName().isEmpty() || !m_file.open(QIODevice::ReadWrite))
        return;
    const qint64 room = m_file.size() / qint64(sizeof(qint64));
    m_next = reinterpret_cast<qint64 *>(m_file.map(0, room * qint64(sizeof(qint64))));
    m_end = m_next ? m_next + room : nullptr;
}

void Stamps::stamp()
{
    using namespace std::chrono;
    if (m_next != m_end)
        *m_next++ = duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}
