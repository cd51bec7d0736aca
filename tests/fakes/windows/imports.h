#pragma once

/// What a program calls of a DLL it calls through a pointer of a certain name, which the linker
/// takes from an import library unless there is one already. So a fake that has the name of a
/// system's function becomes what the program imports.
#define IMPORT_FAKE(function)                             \
    extern "C" {                                          \
    decltype(&(function)) __imp_##function = &(function); \
    }
