#include "seams.h"
#include "windowsapi.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <stop_token>
#include <thread>
#include <utility>

// The MIDI system: as many input devices as scripted, each with a fader, control change 7, that
// moves as often as scripted. No outputs.

namespace {

using Callback = void (*)(HMIDIIN, UINT, DWORD_PTR, DWORD_PTR, DWORD_PTR);

struct Input
{
    Callback callback = nullptr;
    DWORD_PTR instance = 0;
    std::jthread sender;
};

std::array<Input, 8> inputs; // clazy:exclude=non-pod-global-static

Input *inputOf(HMIDIIN handle)
{
    for (Input &input : inputs) {
        if (reinterpret_cast<HMIDIIN>(&input) == handle && input.callback)
            return &input;
    }
    return nullptr;
}

/// Keeps to the scripted rate, but drops messages that are more than 100 ms late.
void send(const std::stop_token &stop, Input &input)
{
    using namespace std::chrono_literals;
    constexpr double mostLate = 0.1; // seconds
    auto last = std::chrono::steady_clock::now();
    double due = 0;
    unsigned value = 0;
    while (!stop.stop_requested()) {
        const auto now = std::chrono::steady_clock::now();
        const std::chrono::duration<double> passed = now - std::exchange(last, now);
        due += std::min(passed.count(), mostLate) * seams().messagesPerSecond;
        const auto messages = static_cast<unsigned>(due);
        due -= messages;
        for (unsigned i = 0; i < messages; ++i) {
            const DWORD_PTR word = 0xB0 | 7 << 8 | (++value & 0x7f) << 16;
            input.callback(reinterpret_cast<HMIDIIN>(&input), MIM_DATA, input.instance, word, 0);
            ++seams().messagesSent;
        }
        std::this_thread::sleep_for(1ms);
    }
}

} // namespace

UINT midiInGetNumDevs()
{
    return static_cast<UINT>(seams().midiDevices);
}

MMRESULT midiInGetDevCapsA(DWORD_PTR device, MIDIINCAPSA *caps, UINT /*capsSize*/)
{
    if (device >= midiInGetNumDevs())
        return MMSYSERR_BADDEVICEID;
    *caps = {};
    std::snprintf(caps->szPname, sizeof caps->szPname, "Fader %u", unsigned(device));
    return MMSYSERR_NOERROR;
}

MMRESULT midiInOpen(
    HMIDIIN *handle, UINT device, DWORD_PTR callback, DWORD_PTR instance, DWORD /*flags*/)
{
    if (device >= midiInGetNumDevs() || device >= inputs.size())
        return MMSYSERR_BADDEVICEID;
    Input &input = inputs[device];
    if (input.callback)
        return MMSYSERR_ALLOCATED;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): Windows passes functions this way
    input.callback = reinterpret_cast<Callback>(callback);
    input.instance = instance;
    *handle = reinterpret_cast<HMIDIIN>(&input);
    return MMSYSERR_NOERROR;
}

MMRESULT midiInStart(HMIDIIN handle)
{
    Input *input = inputOf(handle);
    if (!input)
        return MMSYSERR_INVALHANDLE;
    input->sender = std::jthread(send, std::ref(*input));
    return MMSYSERR_NOERROR;
}

MMRESULT midiInStop(HMIDIIN handle)
{
    Input *input = inputOf(handle);
    if (!input)
        return MMSYSERR_INVALHANDLE;
    input->sender = {};
    return MMSYSERR_NOERROR;
}

MMRESULT midiInClose(HMIDIIN handle)
{
    const MMRESULT result = midiInStop(handle);
    if (Input *input = inputOf(handle))
        input->callback = nullptr;
    return result;
}

UINT midiOutGetNumDevs()
{
    return 0;
}

MMRESULT midiOutGetDevCapsA(DWORD_PTR /*device*/, MIDIOUTCAPSA * /*caps*/, UINT /*capsSize*/)
{
    return MMSYSERR_BADDEVICEID;
}

MMRESULT midiOutOpen(HMIDIOUT * /*handle*/, UINT /*device*/, DWORD_PTR /*callback*/,
    DWORD_PTR /*instance*/, DWORD /*flags*/)
{
    return MMSYSERR_BADDEVICEID;
}

MMRESULT midiOutClose(HMIDIOUT /*handle*/)
{
    return MMSYSERR_INVALHANDLE;
}

MMRESULT midiOutShortMsg(HMIDIOUT /*handle*/, DWORD /*message*/)
{
    return MMSYSERR_INVALHANDLE;
}
