#include "showmode.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>

// Timers keep their resolution here, window managers handle title bars, and sleep is not prevented:
// only developers run it here. That leaves a clean end on a signal.

namespace {

int endAsked = -1; ///< becomes readable with the first signal

/// Async-signal-safe; the event loop does the rest.
void askToEnd(int /*signal*/)
{
    const int before = errno;
    constexpr std::uint64_t once = 1;
    [[maybe_unused]] const auto written = write(endAsked, &once, sizeof once);
    errno = before;
}

} // namespace

void showmode::prepare(QCoreApplication &application)
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

void showmode::keepAwake(bool /*awake*/) { }

void showmode::endWithin(std::chrono::milliseconds time, int exitCode)
{
    std::thread([time, exitCode] {
        std::this_thread::sleep_for(time);
        std::_Exit(exitCode);
    }).detach();
}

void showmode::end(int /*exitCode*/) { }
