#include "showmachine.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <sys/eventfd.h>
#include <unistd.h>

// Timers keep their resolution here, window managers answer for title bars, and a desktop that
// goes to sleep does so only where somebody works on the program. What remains is to end in good
// order when the system asks for it by a signal.

namespace {

int endAsked = -1; ///< becomes readable with the first signal

/// All that may be done in the midst of anything: the event loop does the rest.
void askToEnd(int /*signal*/)
{
    const int before = errno;
    constexpr std::uint64_t once = 1;
    [[maybe_unused]] const auto written = write(endAsked, &once, sizeof once);
    errno = before;
}

} // namespace

void showmachine::prepare(QCoreApplication &application)
{
    endAsked = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (endAsked < 0)
        return;
    auto *notifier = new QSocketNotifier(endAsked, QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    for (const int signal : {SIGINT, SIGTERM})
        std::signal(signal, askToEnd);
}

void showmachine::keepAwake(bool /*awake*/) { }

void showmachine::endProcess(int exitCode)
{
    std::_Exit(exitCode);
}
