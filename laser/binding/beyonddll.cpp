#include "beyonddll.h"

#include "windowsapi.h"

namespace {

HMODULE library = nullptr;

// One pointer per function, under the function's name.
namespace resolved {
#define DECLARE_POINTER(name, parameters, arguments) std::int32_t(*name) parameters = nullptr;
LDB_ENTRY_POINTS(DECLARE_POINTER)
#undef DECLARE_POINTER
} // namespace resolved

template <class Function>
bool resolve(Function *&pointer, const char *name)
{
    // Cast through void(*)() because FARPROC has another signature on Windows.
    pointer =
        reinterpret_cast<Function *>(reinterpret_cast<void (*)()>(GetProcAddress(library, name)));
    return pointer != nullptr;
}

} // namespace

int LoadBeyondDll()
{
    library = LoadLibraryW(L"BEYONDIOx64.dll");
    if (!library)
        return 0;
    bool complete = true;
#define RESOLVE(name, parameters, arguments) complete = complete && resolve(resolved::name, #name);
    LDB_ENTRY_POINTS(RESOLVE)
#undef RESOLVE
    if (!complete)
        FreeBeyondDll();
    return complete ? 1 : 0;
}

void FreeBeyondDll()
{
    if (!library)
        return;
    FreeLibrary(library);
    library = nullptr;
}

#define DEFINE_FORWARDER(name, parameters, arguments) \
    std::int32_t name parameters                      \
    {                                                 \
        return resolved::name arguments;              \
    }
LDB_ENTRY_POINTS(DEFINE_FORWARDER)
#undef DEFINE_FORWARDER
