#pragma once

// The Windows functions that this program calls, and no others. This is the only header with a
// platform switch: on Windows the system declares them; elsewhere the same names with the same
// meanings are declared here and implemented in platform/linux, so all other code is the same on
// every system.

#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <mmsystem.h>
#include <xinput.h>

#else

// NOLINTBEGIN(bugprone-reserved-identifier, modernize-avoid-c-arrays): the system's own names

#include <cstdint>

using BOOL = int;
using CHAR = char;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using SHORT = std::int16_t;
using UINT = unsigned int;
using DWORD = std::uint32_t;
using DWORD_PTR = std::uintptr_t;
using LPCSTR = const char *;
using LPCWSTR = const wchar_t *;

#define CALLBACK
#define WINAPI

// Modules -----------------------------------------------------------------------------------

using HMODULE = struct ModuleHandle *;
using FARPROC = void (*)();

/// Loads a library by bare file name: NAME.dll is looked for as NAME.so, beside the executable
/// first and then in the system's ordinary search order. Null when it cannot be loaded.
HMODULE LoadLibraryW(LPCWSTR fileName);
/// The address of an exported function, or null when the library does not have it.
FARPROC GetProcAddress(HMODULE module, LPCSTR name);
/// Unloads a library; returns 0 on failure.
BOOL FreeLibrary(HMODULE module);

// MIDI --------------------------------------------------------------------------------------
//
// Devices are numbered from 0 in the order of the system; the numbers shift when one is plugged
// in or out. Every function but the counts returns MMSYSERR_NOERROR or the reason of a failure.
// Call them from one thread, and never from inside the callback.

using MMRESULT = UINT;
using HMIDIIN = struct MidiInHandle *;
using HMIDIOUT = struct MidiOutHandle *;

constexpr MMRESULT MMSYSERR_NOERROR = 0;
constexpr MMRESULT MMSYSERR_ERROR = 1;
constexpr MMRESULT MMSYSERR_BADDEVICEID = 2; ///< no device has that number
constexpr MMRESULT MMSYSERR_ALLOCATED = 4; ///< the device is already open
constexpr MMRESULT MMSYSERR_INVALHANDLE = 5; ///< never opened, or already closed
constexpr MMRESULT MMSYSERR_NODRIVER = 6; ///< the device is gone
constexpr MMRESULT MMSYSERR_NOMEM = 7;
constexpr MMRESULT MMSYSERR_INVALPARAM = 11;

constexpr DWORD CALLBACK_NULL = 0;
constexpr DWORD CALLBACK_FUNCTION = 0x30000;

constexpr UINT MIM_OPEN = 0x3C1;
constexpr UINT MIM_CLOSE = 0x3C2;
constexpr UINT MIM_DATA = 0x3C3; ///< a short message in the low three bytes of the first parameter
constexpr UINT MIM_LONGDATA = 0x3C4;
constexpr UINT MIM_ERROR = 0x3C5;
constexpr UINT MIM_LONGERROR = 0x3C6;
constexpr UINT MIM_MOREDATA = 0x3CC;

constexpr int MAXPNAMELEN = 32;

// NOLINTBEGIN(modernize-avoid-c-arrays): the layouts are those of Windows.
struct MIDIINCAPSA
{
    WORD wMid;
    WORD wPid;
    UINT vDriverVersion;
    CHAR szPname[MAXPNAMELEN]; ///< product name, NUL-terminated unless full
    DWORD dwSupport;
};
static_assert(sizeof(MIDIINCAPSA) == 44);

struct MIDIOUTCAPSA
{
    WORD wMid;
    WORD wPid;
    UINT vDriverVersion;
    CHAR szPname[MAXPNAMELEN]; ///< product name, NUL-terminated unless full
    WORD wTechnology;
    WORD wVoices;
    WORD wNotes;
    WORD wChannelMask;
    DWORD dwSupport;
};
static_assert(sizeof(MIDIOUTCAPSA) == 52);
// NOLINTEND(modernize-avoid-c-arrays)

extern "C" {

UINT midiInGetNumDevs();
MMRESULT midiInGetDevCapsA(DWORD_PTR device, MIDIINCAPSA *caps, UINT capsSize);
/// Opens a device. `callback` is a function (HMIDIIN, UINT message, DWORD_PTR instance, DWORD_PTR
/// parameter1, DWORD_PTR parameter2) that is called on a thread of the system's choice.
MMRESULT midiInOpen(
    HMIDIIN *handle, UINT device, DWORD_PTR callback, DWORD_PTR instance, DWORD flags);
/// Starts the messages of an open device.
MMRESULT midiInStart(HMIDIIN handle);
/// Stops the messages of an open device: they are lost.
MMRESULT midiInStop(HMIDIIN handle);
MMRESULT midiInClose(HMIDIIN handle);

UINT midiOutGetNumDevs();
MMRESULT midiOutGetDevCapsA(DWORD_PTR device, MIDIOUTCAPSA *caps, UINT capsSize);
MMRESULT midiOutOpen(
    HMIDIOUT *handle, UINT device, DWORD_PTR callback, DWORD_PTR instance, DWORD flags);
MMRESULT midiOutClose(HMIDIOUT handle);
/// Sends up to three bytes, the status byte lowest.
MMRESULT midiOutShortMsg(HMIDIOUT handle, DWORD message);

} // extern "C"

// Gamepads ----------------------------------------------------------------------------------

constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_BAD_ARGUMENTS = 160; ///< no pad can have that user index
constexpr DWORD ERROR_DEVICE_NOT_CONNECTED = 1167;

constexpr DWORD XUSER_MAX_COUNT = 4;

constexpr WORD XINPUT_GAMEPAD_DPAD_UP = 0x0001;
constexpr WORD XINPUT_GAMEPAD_DPAD_DOWN = 0x0002;
constexpr WORD XINPUT_GAMEPAD_DPAD_LEFT = 0x0004;
constexpr WORD XINPUT_GAMEPAD_DPAD_RIGHT = 0x0008;
constexpr WORD XINPUT_GAMEPAD_START = 0x0010;
constexpr WORD XINPUT_GAMEPAD_BACK = 0x0020;
constexpr WORD XINPUT_GAMEPAD_LEFT_THUMB = 0x0040;
constexpr WORD XINPUT_GAMEPAD_RIGHT_THUMB = 0x0080;
constexpr WORD XINPUT_GAMEPAD_LEFT_SHOULDER = 0x0100;
constexpr WORD XINPUT_GAMEPAD_RIGHT_SHOULDER = 0x0200;
constexpr WORD XINPUT_GAMEPAD_A = 0x1000;
constexpr WORD XINPUT_GAMEPAD_B = 0x2000;
constexpr WORD XINPUT_GAMEPAD_X = 0x4000;
constexpr WORD XINPUT_GAMEPAD_Y = 0x8000;

struct XINPUT_GAMEPAD
{
    WORD wButtons;
    BYTE bLeftTrigger;
    BYTE bRightTrigger;
    SHORT sThumbLX; ///< right is positive
    SHORT sThumbLY; ///< up is positive
    SHORT sThumbRX;
    SHORT sThumbRY;
};

struct XINPUT_STATE
{
    DWORD dwPacketNumber; ///< differs when the state does
    XINPUT_GAMEPAD Gamepad;
};

struct XINPUT_VIBRATION
{
    WORD wLeftMotorSpeed;
    WORD wRightMotorSpeed;
};

extern "C" {

/// Reads the pad of a user index 0 ... 3; a failure leaves `state` alone. Any thread, cheap.
DWORD XInputGetState(DWORD userIndex, XINPUT_STATE *state);
/// Drives the motors of a pad until the next call. Any thread.
DWORD XInputSetState(DWORD userIndex, XINPUT_VIBRATION *vibration);

} // extern "C"

// NOLINTEND(bugprone-reserved-identifier, modernize-avoid-c-arrays)

#endif
