#pragma once

#include "ldb.h"

#include <QtGlobal>

// Every function of the host's library, as a substitute library exports it.

#define DECLARE_ENTRY_POINT(name, parameters, arguments) \
    extern "C" Q_DECL_EXPORT std::int32_t name parameters;
LDB_ENTRY_POINTS(DECLARE_ENTRY_POINT)
#undef DECLARE_ENTRY_POINT
