#include "gamecalls.h"

namespace {

std::optional<NotedCall> copy(CallSlot &slot, std::uint64_t number)
{
    if (slot.number.readInOrder() != number)
        return std::nullopt;
    const NotedCall call = {slot.call.read(), slot.at.read(), slot.process.read()};
    if (slot.number.readInOrder() != number)
        return std::nullopt;
    return call;
}

bool isKnown(GameCall call)
{
    return call >= GameCall::EnableOutput && call <= GameCall::CloseSession;
}

} // namespace

void noteCall(SharedMemory &memory, const NotedCall &call)
{
    const std::uint64_t number = memory.calls.newest.increment();
    CallSlot &slot = memory.calls.slotOf(number);
    slot.number.writeInOrder(0);
    slot.at.writeInOrder(call.at);
    slot.process.writeInOrder(call.process);
    slot.call.writeInOrder(call.call);
    slot.number.writeInOrder(number);
}

CallReader::CallReader(CallRing &ring)
    : m_ring(&ring)
    , m_last(ring.newest.read())
{
}

std::optional<NotedCall> CallReader::take()
{
    const std::uint64_t newest = m_ring->newest.readInOrder();
    if (newest - m_last > rememberedCalls)
        m_last = newest - rememberedCalls;
    while (m_last != newest) {
        const std::uint64_t next = m_last + 1;
        const auto call = copy(m_ring->slotOf(next), next);
        if (!call && m_unfinished != next) {
            // Skipped if still incomplete next time: the game may have been killed while writing.
            m_unfinished = next;
            return std::nullopt;
        }
        m_last = next;
        if (call && isKnown(call->call))
            return call;
    }
    return std::nullopt;
}
