#pragma once

/// Defines the import pointer of a system function, so that calls reach the fake of the same name:
/// a program calls DLL functions through pointers named __imp_..., which the linker takes from an
/// import library only if they are undefined.
#define IMPORT_FAKE(function)                             \
    extern "C" {                                          \
    decltype(&(function)) __imp_##function = &(function); \
    }
