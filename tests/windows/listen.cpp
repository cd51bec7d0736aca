// listen PROGRAM: starts a program under a minimal debugger and prints its debug output.

#include <windows.h>

#include <cstdio>
#include <vector>

namespace {

void print(HANDLE process, const OUTPUT_DEBUG_STRING_INFO &told)
{
    const std::size_t size = told.nDebugStringLength * (told.fUnicode ? sizeof(wchar_t) : 1);
    std::vector<char> text(size);
    SIZE_T read = 0;
    ReadProcessMemory(process, told.lpDebugStringData, text.data(), size, &read);
    if (told.fUnicode) // the program under test sends only ASCII
        std::erase(text, '\0');
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    if (argc != 2
        || !CreateProcessA(argv[1], nullptr, nullptr, nullptr, FALSE, DEBUG_ONLY_THIS_PROCESS,
            nullptr, nullptr, &startup, &started))
        return 2;
    DEBUG_EVENT event = {};
    while (
        event.dwDebugEventCode != EXIT_PROCESS_DEBUG_EVENT && WaitForDebugEvent(&event, INFINITE)) {
        if (event.dwDebugEventCode == OUTPUT_DEBUG_STRING_EVENT)
            print(started.hProcess, event.u.DebugString);
        // The system raises a breakpoint when a debugger starts a program; that is not a fault.
        const bool fault = event.dwDebugEventCode == EXCEPTION_DEBUG_EVENT
            && event.u.Exception.ExceptionRecord.ExceptionCode != EXCEPTION_BREAKPOINT;
        ContinueDebugEvent(
            event.dwProcessId, event.dwThreadId, fault ? DBG_EXCEPTION_NOT_HANDLED : DBG_CONTINUE);
    }
    return 0;
}
