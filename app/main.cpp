#include "debuglog.h"
#include "mainwindow.h"
#include "showmachine.h"

#include <QApplication>

namespace {

int run(QApplication &application)
{
    const DebugLog log;
    showmachine::prepare(application);
    MainWindow window;
    window.gameShownChanged = showmachine::keepAwake;
    window.show();
    return window.isVisible() ? QApplication::exec() : EXIT_SUCCESS;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName("Laser Rallyvane");
    // Returning would wait for the threads of Qt and other libraries. A name lookup of the update
    // check can hang there for minutes.
    showmachine::endProcess(run(application));
}
