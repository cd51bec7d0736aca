#include "ldb.h"
#include "windowsapi.h"

#include <string_view>

// A laser host that is ready and recent enough, whose functions only return, so that measurements
// show the game's own time.

namespace {

/// Ignores the arguments.
template <class... Arguments>
std::int32_t answer(std::string_view name, Arguments... /*arguments*/)
{
    if (name == "ldbGetBeyondVersion")
        return 1700;
    return name == "ldbBeyondExeReady" || name == "ldbGetZoneCount" ? 1 : 0;
}

namespace library {
#define PASS(...) __VA_OPT__(, ) __VA_ARGS__
#define DEFINE_ENTRY_POINT(name, parameters, arguments) \
    std::int32_t name parameters                        \
    {                                                   \
        return answer(#name PASS arguments);            \
    }
LDB_ENTRY_POINTS(DEFINE_ENTRY_POINT)
#undef DEFINE_ENTRY_POINT
} // namespace library

int theModule = 0;

} // namespace

HMODULE LoadLibraryW(LPCWSTR /*fileName*/)
{
    return reinterpret_cast<HMODULE>(&theModule);
}

FARPROC GetProcAddress(HMODULE /*module*/, LPCSTR name)
{
    const std::string_view wanted(name);
#define FIND_ENTRY_POINT(entry, parameters, arguments) \
    if (wanted == #entry)                              \
        return reinterpret_cast<FARPROC>(&library::entry);
    LDB_ENTRY_POINTS(FIND_ENTRY_POINT)
#undef FIND_ENTRY_POINT
    return nullptr;
}

BOOL FreeLibrary(HMODULE /*module*/)
{
    return 1;
}
