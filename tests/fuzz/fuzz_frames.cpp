#include "bytes.h"
#include "eye.h"
#include "frames.h"
#include "gamecalls.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>

// Reads frames and calls from shared memory with arbitrary content, as the host does.
//
// An input is the header in memory layout, a zone (one byte), then that zone's ring: its newest
// number, the number being read, and for each slot number, count, time, count of points, count of
// words that follow (one byte) and the words. After the frames come the calls: the newest number,
// and for each slot number, call, time, process. Missing input reads as zeros.

namespace {

void check(bool law)
{
    if (!law)
        std::abort();
}

void fill(ZoneRing &ring, Bytes &input)
{
    ring.newest.write(input.take<std::uint64_t>());
    ring.reading.write(input.take<std::uint64_t>());
    for (FrameSlot &slot : ring.frames) {
        slot.number.write(input.take<std::uint64_t>());
        slot.sent.write(input.take<std::uint64_t>());
        slot.sentAt.write(input.take<std::int64_t>());
        slot.pointCount.write(input.take<std::uint32_t>());
        const auto words = input.take<std::uint8_t>();
        std::array<std::uint32_t, 0xff> content = {};
        for (std::size_t i = 0; i < words; ++i)
            content[i] = input.take<std::uint32_t>();
        std::memcpy(slot.points.data(), content.data(), sizeof content);
    }
}

void fill(CallRing &ring, Bytes &input)
{
    ring.newest.write(input.take<std::uint64_t>());
    for (CallSlot &slot : ring.calls) {
        slot.number.write(input.take<std::uint64_t>());
        slot.call.write(input.take<GameCall>());
        slot.at.write(input.take<std::int64_t>());
        slot.process.write(input.take<std::uint64_t>());
    }
}

/// Takes calls until the reader has read or skipped all of them.
void takeCalls(CallReader &reader)
{
    for (std::uint64_t i = 0; i <= 2 * rememberedCalls; ++i) {
        if (const auto call = reader.take())
            check(call->call >= GameCall::EnableOutput && call->call <= GameCall::CloseSession);
    }
    check(!reader.take());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const auto memory = std::make_unique<SharedMemory>();
    Bytes input(data, size);
    memory->header = input.take<HostHeader>();
    ZoneRing &ring = memory->zones[input.take<std::uint8_t>() % memory->zones.size()];
    ring.newest.write(input.take<std::uint64_t>());
    FrameReader reader(ring);
    fill(ring, input);
    CallReader calls(memory->calls);
    fill(memory->calls, input);
    takeCalls(calls);

    const std::int32_t zones = hostZoneCount(*memory);
    check(zones >= 0 && zones <= maxZones);
    isHostAlive(*memory, memory->header.heartbeat.read() / 2);

    Projector projector;
    projector.setOutputOn(true);
    Eye eye(projector);
    eye.resize(24);
    Frame frame;
    std::uint64_t taken = 0;
    while (reader.take(frame)) {
        check(++taken <= framesPerZone);
        check(frame.points.size() <= std::size_t(ldbMaxPoints));
        const double now = 0.009 * double(taken);
        projector.show(frame.points, now);
        eye.look(now);
    }
    const LdbPoint point = {};
    check(writeFrame(*memory, 0, {&point, 1}, 0) == (zones > 0));
    return 0;
}
