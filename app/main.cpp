#include "debuglog.h"
#include "mainwindow.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const DebugLog log;
    MainWindow window;
    window.show();
    return QApplication::exec();
}
