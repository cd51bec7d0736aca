#include "debuglog.h"
#include "lasercontrols.h"
#include "mainwindow.h"
#include "showmode.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName("Laser Rallyvane");
    const DebugLog log;
    showmode::prepare(application);
    MainWindow window;
    QObject::connect(&window.laser(), &LaserControls::gameShownChanged, showmode::keepAwake);
    window.show();
    return QApplication::exec();
}
