#include "debuglog.h"
#include "folderlock.h"
#include "lasercontrols.h"
#include "mainwindow.h"
#include "showmode.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>

#include <cstdlib>

using namespace std::chrono_literals;

namespace {

/// How long the process may go on after its window.
constexpr auto longestExit = 500ms;

void sayRunningAlready()
{
    const QString text = QApplication::translate("main", "Laser Rallyvane is running already");
    qInfo("%s", qUtf8Printable(text));
    QMessageBox::information(nullptr, QApplication::translate("main", "Already Running"), text);
}

int run(QApplication &application)
{
    // A second instance would switch the output of the first one off when it connects to the host,
    // and write the same settings and log.
    const FolderLock folder(QDir::currentPath());
    if (folder.isTaken()) {
        sayRunningAlready();
        return EXIT_FAILURE;
    }
    const DebugLog log;
    showmode::prepare(application);
    MainWindow window;
    QObject::connect(&window.laser(), &LaserControls::gameShownChanged, showmode::keepAwake);
    window.show();
    return window.isVisible() ? QApplication::exec() : EXIT_SUCCESS;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName("Laser Rallyvane");
    const int result = run(application);
    // The application waits for its threads. A name lookup of the update check can hang in one of
    // them for minutes.
    showmode::endWithin(longestExit, result);
    return result;
}
