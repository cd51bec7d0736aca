#include "runningwindow.h"

#include <QTest>

RunningWindow::~RunningWindow()
{
    close();
}

void RunningWindow::waitForFrames(int count)
{
    const int enough = host.framesSent + count;
    QTRY_VERIFY(host.framesSent >= enough);
}
