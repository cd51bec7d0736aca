#include "windowsapi.h"

// The device functions, each resolved at its first call. Their implementations load over thirty
// libraries, so load them on first use; without them there are simply no devices.

namespace {

/// A function of one of the two libraries beside the program, or null.
template <class Function>
Function *find(LPCWSTR library, LPCSTR name)
{
    HMODULE module = LoadLibraryW(library);
    return module ? reinterpret_cast<Function *>(GetProcAddress(module, name)) : nullptr;
}

} // namespace

#define FORWARD(library, result, name, parameters, arguments, without)         \
    result name parameters                                                     \
    {                                                                          \
        static auto *const function = find<decltype(name)>(L##library, #name); \
        return function ? function arguments : without;                        \
    }
#define FORWARD_MIDI(name, parameters, arguments) \
    FORWARD("winmm.dll", MMRESULT, name, parameters, arguments, MMSYSERR_NODRIVER)
#define FORWARD_XINPUT(name, parameters, arguments) \
    FORWARD("xinput9_1_0.dll", DWORD, name, parameters, arguments, ERROR_DEVICE_NOT_CONNECTED)

FORWARD("winmm.dll", UINT, midiInGetNumDevs, (), (), 0)
FORWARD_MIDI(
    midiInGetDevCapsA, (DWORD_PTR device, MIDIINCAPSA *caps, UINT size), (device, caps, size))
FORWARD_MIDI(midiInOpen,
    (HMIDIIN * handle, UINT device, DWORD_PTR callback, DWORD_PTR instance, DWORD flags),
    (handle, device, callback, instance, flags))
FORWARD_MIDI(midiInStart, (HMIDIIN handle), (handle))
FORWARD_MIDI(midiInStop, (HMIDIIN handle), (handle))
FORWARD_MIDI(midiInClose, (HMIDIIN handle), (handle))
FORWARD("winmm.dll", UINT, midiOutGetNumDevs, (), (), 0)
FORWARD_MIDI(
    midiOutGetDevCapsA, (DWORD_PTR device, MIDIOUTCAPSA *caps, UINT size), (device, caps, size))
FORWARD_MIDI(midiOutOpen,
    (HMIDIOUT * handle, UINT device, DWORD_PTR callback, DWORD_PTR instance, DWORD flags),
    (handle, device, callback, instance, flags))
FORWARD_MIDI(midiOutClose, (HMIDIOUT handle), (handle))
FORWARD_MIDI(midiOutShortMsg, (HMIDIOUT handle, DWORD message), (handle, message))

FORWARD_XINPUT(XInputGetState, (DWORD userIndex, XINPUT_STATE *state), (userIndex, state))
FORWARD_XINPUT(
    XInputSetState, (DWORD userIndex, XINPUT_VIBRATION *vibration), (userIndex, vibration))
