// controls TITLE: prints the texts in the window with that title, a line each; before a box that
// can be ticked, "[x]" or "[ ]". Returns 1 if there is no such window.

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

std::string textOf(HWND control)
{
    std::string text(1024, '\0');
    // Unlike GetWindowText(), this reads the controls of other programs.
    text.resize(std::size_t(
        SendMessageA(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

std::string tickOf(HWND control)
{
    char name[16] = {};
    GetClassNameA(control, name, sizeof name);
    const LONG_PTR kind = GetWindowLongPtrA(control, GWL_STYLE) & BS_TYPEMASK;
    if (std::string(name) != "Button" || (kind != BS_AUTOCHECKBOX && kind != BS_CHECKBOX))
        return {};
    return SendMessageA(control, BM_GETCHECK, 0, 0) == BST_CHECKED ? "[x] " : "[ ] ";
}

BOOL CALLBACK print(HWND control, LPARAM /*unused*/)
{
    if (IsWindowVisible(control))
        std::printf("%s%s\n", tickOf(control).c_str(), textOf(control).c_str());
    return TRUE;
}

BOOL CALLBACK printIfTitled(HWND window, LPARAM title)
{
    if (IsWindowVisible(window)
        && textOf(window).starts_with(
            reinterpret_cast<const char *>(title))) // NOLINT(performance-no-int-to-ptr)
        EnumChildWindows(window, print, 0);
    return TRUE;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    EnumWindows(printIfTitled, reinterpret_cast<LPARAM>(argv[1]));
    return 0;
}
