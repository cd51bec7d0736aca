#include "debuglog.h"
#include "folderlock.h"
#include "lasercontrols.h"
#include "mainwindow.h"
#include "ownversion.h"
#include "showmode.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QSysInfo>

#include <cstdlib>

using namespace std::chrono_literals;

namespace {

/// The longest time the process may outlive its window.
constexpr auto longestExit = 500ms;

void sayRunningAlready()
{
    const QString text = QApplication::translate("main", "Laser Rallyvane is running already");
    qInfo("%s", qUtf8Printable(text));
    QMessageBox::information(nullptr, QApplication::translate("main", "Already Running"), text);
}

void logStart()
{
    qDebug("Laser Rallyvane %s started on %s, %s, with Qt %s", ownVersionText,
        qUtf8Printable(QSysInfo::prettyProductName()),
        qUtf8Printable(QSysInfo::currentCpuArchitecture()), qVersion());
}

int show(QApplication &application)
{
    showmode::prepare(application);
    MainWindow window;
    QObject::connect(&window.laser(), &LaserControls::gameShownChanged, showmode::keepAwake);
    window.show();
    return window.isVisible() ? QApplication::exec() : EXIT_SUCCESS;
}

int run(QApplication &application)
{
    // A second instance would switch off the first one's output when it connects to the host, and
    // would write to the same settings and log.
    const FolderLock folder(QDir::currentPath());
    if (folder.isTaken()) {
        sayRunningAlready();
        return EXIT_FAILURE;
    }
    const DebugLog log;
    logStart();
    const int exitCode = show(application);
    qDebug("Ended with exit code %d", exitCode);
    return exitCode;
}

} // namespace

int main(int argc, char *argv[])
{
    int exitCode = EXIT_FAILURE;
    {
        QApplication application(argc, argv);
        QApplication::setApplicationName("Laser Rallyvane");
        exitCode = run(application);
        // The application's destructor waits for its threads, one of which may hang for minutes in
        // a name lookup of the update check.
        showmode::endWithin(longestExit, exitCode);
    }
    showmode::end(exitCode);
    return exitCode;
}
