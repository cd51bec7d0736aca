#pragma once

#include "ldb.h"

// The host's library in this process: loaded once, its functions called under their own names.

/// Loads the library and resolves all its functions. Returns 1, or 0 if the library or one of the
/// functions is missing; the library is then unloaded. Call before any forwarder.
int LoadBeyondDll();

/// Unloads the library if it is loaded.
void FreeBeyondDll();

// The forwarders. Any thread, after LoadBeyondDll has returned 1 and before FreeBeyondDll.
#define DECLARE_FORWARDER(name, parameters, arguments) std::int32_t name parameters;
LDB_ENTRY_POINTS(DECLARE_FORWARDER)
#undef DECLARE_FORWARDER
