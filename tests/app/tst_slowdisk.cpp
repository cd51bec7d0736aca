// For systems on which a program can replace the function that syncs a file, to simulate a slow
// disk.

#include "runningwindow.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QSlider>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <atomic>

using namespace Qt::StringLiterals;

namespace {

std::atomic<bool> isSlow = false;
std::atomic<int> syncs = 0;
std::atomic<int> syncsOnWindowThread = 0;
QSemaphore release;

int syncFile()
{
    if (QThread::currentThread() == qApp->thread())
        ++syncsOnWindowThread;
    else if (isSlow)
        release.acquire();
    ++syncs;
    return 0;
}

} // namespace

extern "C" int fsync(int /*file*/)
{
    return syncFile();
}

extern "C" int fdatasync(int /*file*/)
{
    return syncFile();
}

class tst_SlowDisk : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void the_window_works_and_the_ball_moves_while_the_disk_hangs();
    void the_laser_is_dark_and_the_window_ends_while_the_disk_hangs();
};

void tst_SlowDisk::init()
{
    isSlow = false;
    syncs = 0;
    syncsOnWindowThread = 0;
}

void tst_SlowDisk::the_window_works_and_the_ball_moves_while_the_disk_hangs()
{
    RunningWindow running;
    running.open();
    running.waitForStatus();
    running.click(u"showButton"_s);
    isSlow = true;
    auto *slider = running.find<QSlider>(u"speedSlider"_s);
    for (const int speed : {21, 22, 23}) {
        QTest::keyClick(slider, Qt::Key_Right);
        QCOMPARE(int(running.game().ballSpeed), speed);
        running.waitForFrames(10);
    }
    QCOMPARE(int(syncs), 0);
    isSlow = false;
    release.release();
    QCOMPARE(running.setting(u"BallSpeed"_s), u"23"_s);
    QVERIFY(syncs > 0);
    QCOMPARE(int(syncsOnWindowThread), 0);
}

void tst_SlowDisk::the_laser_is_dark_and_the_window_ends_while_the_disk_hangs()
{
    RunningWindow running;
    running.open();
    running.waitForStatus();
    running.click(u"showButton"_s);
    running.waitForFrames(10);
    QTest::keyClick(running.find(u"sensLSlider"_s), Qt::Key_Right);
    isSlow = true;
    running.host.takeCalls();
    running.close();
    QCOMPARE(int(syncs), 0); // still hanging
    QCOMPARE(running.host.takeCalls().filter(u"ldbSendFrame"_s).constLast(),
        u"ldbSendFrame 2 0 0 SingleZone 0 points null 100 -1"_s);
    isSlow = false;
    release.release();
    QTRY_COMPARE(running.setting(u"SensL"_s), u"513"_s); // nothing is lost
    QCOMPARE(int(syncsOnWindowThread), 0);
}

QTEST_MAIN(tst_SlowDisk)
#include "tst_slowdisk.moc"
