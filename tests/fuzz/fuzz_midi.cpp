#include "bytes.h"
#include "fakemidi.h"
#include "midibinding.h"
#include "mididevices.h"

#include <cstdlib>

// Handles arbitrary MIDI messages, with arbitrary bindings.
//
// An input is the move binding and the start binding (status and number, four bytes each), a byte
// whose lowest bit is the 14-bit switch, and then calls of the callback: a byte with the handle
// (low nibble: 0 left, 1 right, otherwise unknown) and the kind of call (high nibble: 0 a short
// message), and the word, four bytes. Missing input reads as zeros.

namespace {

void check(bool law)
{
    if (!law)
        std::abort();
}

struct Received
{
    int count = 0;
    int play = -1;
    MidiMessage message;
};

Received received;

/// The two players' devices, open for the whole run.
class Devices
{
public:
    Devices()
        : m_system({QStringLiteral("left"), QStringLiteral("right")})
    {
        unsigned index = 0;
        for (MidiDevIn *device : {&midiInLeft, &midiInRight}) {
            check(device->open(index++, nullptr) == 0 && device->start() == 0);
            QObject::connect(device, &MidiDevIn::midiReceived,
                [](int play, unsigned char data1, unsigned char data2, unsigned char data3) {
                    received = {received.count + 1, play, {data1, data2, data3}};
                });
        }
    }

    HMIDIIN handleOf(unsigned side) const
    {
        if (side > 1)
            return nullptr;
        return side == 0 ? midiInLeft.getHandle() : midiInRight.getHandle();
    }

private:
    FakeMidi m_system;
};

void checkAction(
    const MidiBinding &move, const MidiBinding &start, bool fourteenBits, std::uint32_t word)
{
    const unsigned status = word & 0xff;
    const unsigned number = word >> 8 & 0xff;
    const unsigned value = word >> 16 & 0xff;
    const MidiAction action = midiActionFor(move, start, fourteenBits, decodeMidiWord(word));
    const bool moves =
        move.status != 0 && move.status == status && (fourteenBits || move.number == number);
    check(action.paddleInput.has_value() == moves);
    if (moves)
        check(*action.paddleInput == static_cast<int>(fourteenBits ? number : value) - 64);
    check(action.start == (start.status != 0 && start.status == status && start.number == number));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const Devices devices;
    Bytes input(data, size);
    const MidiBinding move = {input.take<std::uint32_t>(), input.take<std::uint32_t>()};
    const MidiBinding start = {input.take<std::uint32_t>(), input.take<std::uint32_t>()};
    const bool fourteenBits = (input.take<std::uint8_t>() & 1) != 0;
    while (!input.atEnd()) {
        const auto call = input.take<std::uint8_t>();
        const auto word = input.take<std::uint32_t>();
        const unsigned side = call & 0xf;
        const UINT kind = MIM_DATA + (call >> 4);
        received = {};
        midiInCallback(devices.handleOf(side), kind, 0, word, 0);
        const bool arrives = kind == MIM_DATA && side < 2;
        check(received.count == static_cast<int>(arrives));
        if (arrives) {
            check(received.play == static_cast<int>(side));
            check(encodeMidiWord(received.message) == (word & 0xffffff));
        }
        checkAction(move, start, fourteenBits, word);
    }
    return 0;
}
