#include "mainwindow.h"
#include "ownversion.h"
#include "update.h"
#include "updatehost.h"

bool MainWindow::CheckForUpdate()
{
    return checkForUpdate({.host = updateHost()}, ownVersion, releaseNotes);
}
