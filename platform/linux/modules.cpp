#include "windowsapi.h"

#include <dlfcn.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace {

/// NAME.dll as NAME.so. The names are ours and plain ASCII.
std::string sharedObjectName(std::wstring_view dllName)
{
    std::string name(dllName.begin(), dllName.end());
    constexpr std::string_view suffix = ".dll";
    if (name.ends_with(suffix))
        name.replace(name.size() - suffix.size(), suffix.size(), ".so");
    return name;
}

} // namespace

HMODULE LoadLibraryW(LPCWSTR fileName)
{
    const std::string name = sharedObjectName(fileName);
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    void *module = nullptr;
    if (!error)
        module = dlopen((program.parent_path() / name).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module)
        module = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
    return static_cast<HMODULE>(module);
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name)
{
    return reinterpret_cast<FARPROC>(dlsym(module, name));
}

BOOL FreeLibrary(HMODULE module)
{
    return dlclose(module) == 0;
}
