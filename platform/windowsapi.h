#pragma once

// The functions of Windows that this program calls, and nothing else of it. This is the one
// header with a platform switch: on Windows the system declares them; elsewhere the same names
// with the same meanings are declared here and implemented in platform/linux, so that all other
// code is the same on every system.

#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <mmsystem.h>
#include <xinput.h>

#else

#include <cstdint>

using BOOL = int;
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

using HMODULE = struct HINSTANCE__ *;
using FARPROC = void (*)();

/// Loads a library by bare file name: NAME.dll is looked for as NAME.so, beside the executable
/// first and then in the system's ordinary search order. Null when it cannot be loaded.
HMODULE LoadLibraryW(LPCWSTR fileName);
/// The address of an exported function, or null when the library does not have it.
FARPROC GetProcAddress(HMODULE module, LPCSTR name);
/// Gives a library back; 0 is failure.
BOOL FreeLibrary(HMODULE module);

#endif
