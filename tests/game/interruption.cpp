#include "interruption.h"

#include <x86intrin.h>

#include <csignal>
#include <cstdint>
#include <ucontext.h>

namespace {

/// The trap flag: while set, the processor traps after every instruction.
constexpr unsigned trapFlag = 0x100;

int left = 0;
const std::function<void()> *interrupt = nullptr;

void onInstruction(int /*signal*/, siginfo_t * /*info*/, void *context)
{
    if (--left > 0)
        return;
    // The flags of the interrupted code, not of this handler.
    static_cast<ucontext_t *>(context)->uc_mcontext.gregs[REG_EFL] &= ~greg_t{trapFlag};
    (*interrupt)();
}

} // namespace

bool runInterrupted(
    const std::function<void()> &work, int instructions, const std::function<void()> &interruption)
{
    left = instructions;
    interrupt = &interruption;
    struct sigaction action = {};
    struct sigaction previous = {};
    action.sa_sigaction = &onInstruction;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGTRAP, &action, &previous);
    __writeeflags(__readeflags() | trapFlag);
    work();
    __writeeflags(__readeflags() & ~std::uint64_t{trapFlag});
    sigaction(SIGTRAP, &previous, nullptr);
    return left <= 0;
}
