#include "debuglog.h"
#include "mainwindow.h"
#include "showmachine.h"

#include <QApplication>
#include <QTimer>

#include <atomic>
#include <csignal>

using namespace std::chrono_literals;

namespace {

std::atomic<bool> askedToEnd = false;
static_assert(std::atomic<bool>::is_always_lock_free);

void askToEnd(int /*signal*/)
{
    askedToEnd = true;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName("Laser Rallyvane");
    const DebugLog log;
    showmachine::prepare(application);
    MainWindow window;
    window.gameShownChanged = showmachine::keepAwake;
    window.show();

    // Whoever ends the program from outside gets the same farewell, and a dark laser, as one who
    // closes the window.
    std::signal(SIGINT, askToEnd);
    std::signal(SIGTERM, askToEnd);
    QTimer endTimer;
    QObject::connect(&endTimer, &QTimer::timeout, &window, [] {
        if (askedToEnd)
            QApplication::quit();
    });
    endTimer.start(100ms);

    return QApplication::exec();
}
