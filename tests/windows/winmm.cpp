// Replaces the system library with two MIDI devices that are played by a script. Functions that
// other libraries of the program need are forwarded to the real one.

#include "script.h"

#include <windows.h>

#include <mmsystem.h>

#include <array>
#include <atomic>
#include <mutex>
#include <string_view>

namespace {

struct Input
{
    const char *name;
    DWORD_PTR callback = 0;
    DWORD_PTR instance = 0;
    std::atomic<bool> started = false;
};

std::array<Input, 2> inputs = {{{"Stand-in fader"}, {"Stand-in keys"}}};

using MidiInCallback = void(CALLBACK *)(HMIDIIN, UINT, DWORD_PTR, DWORD_PTR, DWORD_PTR);

HMIDIIN handleOf(std::size_t device)
{
    return reinterpret_cast<HMIDIIN>(device + 1); // NOLINT(performance-no-int-to-ptr)
}

/// midi DEVICE STATUS DATA1 DATA2
void playMidi(const std::vector<int> &numbers)
{
    const auto device = static_cast<std::size_t>(numbers.at(0));
    const Input &input = inputs.at(device);
    if (!input.started)
        return;
    const auto word =
        static_cast<DWORD_PTR>(numbers.at(1) | numbers.at(2) << 8 | numbers.at(3) << 16);
    reinterpret_cast<MidiInCallback>(input.callback)( // NOLINT(performance-no-int-to-ptr)
        handleOf(device), MIM_DATA, input.instance, word, GetTickCount());
}

Input *inputOf(HMIDIIN handle)
{
    const auto number = reinterpret_cast<std::size_t>(handle);
    return number >= 1 && number <= inputs.size() ? &inputs[number - 1] : nullptr;
}

template <class Function>
Function *real(const char *name)
{
    std::array<wchar_t, MAX_PATH> path = {};
    GetSystemDirectoryW(path.data(), MAX_PATH - 16);
    static const HMODULE library = LoadLibraryW(std::wcscat(path.data(), L"\\winmm.dll"));
    return reinterpret_cast<Function *>(
        reinterpret_cast<void (*)()>(GetProcAddress(library, name)));
}

} // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {

UINT WINAPI midiInGetNumDevs()
{
    return static_cast<UINT>(inputs.size());
}

MMRESULT WINAPI midiInGetDevCapsA(UINT_PTR device, LPMIDIINCAPSA caps, UINT size)
{
    if (device >= inputs.size() || size != sizeof *caps)
        return MMSYSERR_BADDEVICEID;
    *caps = {};
    std::string_view(inputs[device].name).copy(caps->szPname, sizeof caps->szPname - 1);
    return MMSYSERR_NOERROR;
}

MMRESULT WINAPI midiInOpen(
    LPHMIDIIN handle, UINT device, DWORD_PTR callback, DWORD_PTR instance, DWORD flags)
{
    if (device >= inputs.size() || flags != CALLBACK_FUNCTION)
        return MMSYSERR_BADDEVICEID;
    Script::note("midiInOpen " + std::to_string(device));
    inputs[device].callback = callback;
    inputs[device].instance = instance;
    *handle = handleOf(device);
    static std::once_flag once;
    std::call_once(once, [] { Script::follow("midi", playMidi); });
    return MMSYSERR_NOERROR;
}

MMRESULT WINAPI midiInStart(HMIDIIN handle)
{
    Input *const input = inputOf(handle);
    if (!input)
        return MMSYSERR_INVALHANDLE;
    Script::note("midiInStart");
    input->started = true;
    return MMSYSERR_NOERROR;
}

MMRESULT WINAPI midiInStop(HMIDIIN handle)
{
    Input *const input = inputOf(handle);
    if (!input)
        return MMSYSERR_INVALHANDLE;
    Script::note("midiInStop");
    input->started = false;
    return MMSYSERR_NOERROR;
}

MMRESULT WINAPI midiInClose(HMIDIIN handle)
{
    if (!inputOf(handle))
        return MMSYSERR_INVALHANDLE;
    Script::note("midiInClose");
    return MMSYSERR_NOERROR;
}

UINT WINAPI midiOutGetNumDevs()
{
    return 0;
}

MMRESULT WINAPI midiOutGetDevCapsA(UINT_PTR /*device*/, LPMIDIOUTCAPSA /*caps*/, UINT /*size*/)
{
    return MMSYSERR_BADDEVICEID;
}

MMRESULT WINAPI midiOutOpen(LPHMIDIOUT /*handle*/, UINT /*device*/, DWORD_PTR /*callback*/,
    DWORD_PTR /*instance*/, DWORD /*flags*/)
{
    return MMSYSERR_BADDEVICEID;
}

MMRESULT WINAPI midiOutClose(HMIDIOUT /*handle*/)
{
    return MMSYSERR_INVALHANDLE;
}

MMRESULT WINAPI midiOutShortMsg(HMIDIOUT /*handle*/, DWORD /*message*/)
{
    return MMSYSERR_INVALHANDLE;
}

MMRESULT WINAPI timeSetEvent(
    UINT delay, UINT resolution, LPTIMECALLBACK callback, DWORD_PTR user, UINT flags)
{
    return real<decltype(timeSetEvent)>("timeSetEvent")(delay, resolution, callback, user, flags);
}

MMRESULT WINAPI timeKillEvent(UINT timer)
{
    return real<decltype(timeKillEvent)>("timeKillEvent")(timer);
}

WINBOOL WINAPI PlaySoundW(LPCWSTR sound, HMODULE module, DWORD flags)
{
    return real<decltype(PlaySoundW)>("PlaySoundW")(sound, module, flags);
}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
