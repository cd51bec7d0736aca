#include "debuglog.h"
#include "lasercontrols.h"
#include "mainwindow.h"
#include "showmachine.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName("Laser Rallyvane");
    const DebugLog log;
    showmachine::prepare(application);
    MainWindow window;
    QObject::connect(&window.laser(), &LaserControls::gameShownChanged, showmachine::keepAwake);
    window.show();
    return QApplication::exec();
}
