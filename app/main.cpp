#include "debuglog.h"
#include "folderlock.h"
#include "lasercontrols.h"
#include "mainwindow.h"
#include "showmode.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>

#include <cstdlib>

namespace {

void sayRunningAlready()
{
    const QString text = QApplication::translate("main", "Laser Rallyvane is running already");
    qInfo("%s", qUtf8Printable(text));
    QMessageBox::information(nullptr, QApplication::translate("main", "Already Running"), text);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName("Laser Rallyvane");
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
    return QApplication::exec();
}
