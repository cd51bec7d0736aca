#include "mainwindow.h"
#include "ownversion.h"
#include "update.h"
#include "updatehost.h"

#include <QDebug>

bool MainWindow::CheckForUpdate()
{
    const UpdateServer server = {.host = updateHost()};
    qDebug().nospace() << "Checking for updates, version " << ownVersionText << ", server "
                       << server.host;
    return checkForUpdate(server, ownVersion, releaseNotes);
}
