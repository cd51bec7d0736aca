#pragma once

#include "ldb.h"

// The host's library inside this process: loaded once, its functions called under their own
// names.

/// Loads the library and resolves all of its functions. Returns 1, or 0 when the library or one
/// of the functions is missing; the library is then given back. Called before any forwarder.
int LoadBeyondDll();

/// Gives the library back when it is loaded.
void FreeBeyondDll();

// The forwarders, from any thread once LoadBeyondDll has returned 1 and until FreeBeyondDll.
#define DECLARE_FORWARDER(name, parameters, arguments) std::int32_t name parameters;
LDB_ENTRY_POINTS(DECLARE_FORWARDER)
#undef DECLARE_FORWARDER
