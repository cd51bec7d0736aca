// For systems on which a program can replace the function that syncs a file, to simulate a slow
// disk.

#include "runningwindow.h"
#include "settingsstore.h"

#include <QSemaphore>
#include <QSlider>
#include <QTest>
#include <QThread>

#include <atomic>

using namespace Qt::StringLiterals;

namespace {

std::atomic<bool> isSlow = false;
std::atomic<int> begun = 0; ///< syncs
std::atomic<int> done = 0;
std::atomic<int> syncsOnWindowThread = 0;
QSemaphore release;

int syncFile()
{
    ++begun;
    if (QThread::currentThread() == qApp->thread())
        ++syncsOnWindowThread;
    else if (isSlow)
        release.acquire();
    ++done;
    return 0;
}

/// From now on every sync hangs until hangNoLonger().
void hang(const RunningWindow &running)
{
    running.window->settings().flush();
    begun = 0;
    done = 0;
    isSlow = true;
}

void hangNoLonger()
{
    isSlow = false;
    release.release();
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
    syncsOnWindowThread = 0;
}

void tst_SlowDisk::the_window_works_and_the_ball_moves_while_the_disk_hangs()
{
    RunningWindow running;
    running.open();
    running.waitForStatus();
    running.click(u"showButton"_s);
    hang(running);
    auto *slider = running.find<QSlider>(u"speedSlider"_s);
    for (const int speed : {21, 22, 23}) {
        QTest::keyClick(slider, Qt::Key_Right);
        QCOMPARE(int(running.game().ballSpeed), speed);
        running.waitForFrames(10);
    }
    QTRY_COMPARE(int(begun), 1);
    running.waitForFrames(10);
    QCOMPARE(int(done), 0);
    hangNoLonger();
    QCOMPARE(running.setting(u"BallSpeed"_s), u"23"_s);
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
    hang(running);
    running.host.takeCalls();
    running.close();
    QCOMPARE(int(begun), 1);
    QCOMPARE(int(done), 0); // still hanging
    QCOMPARE(running.host.takeCalls().filter(u"ldbSendFrame"_s).constLast(),
        u"ldbSendFrame 2 0 0 SingleZone 0 points null 100 -1"_s);
    hangNoLonger();
    QTRY_COMPARE(running.setting(u"SensL"_s), u"513"_s); // nothing is lost
    QCOMPARE(int(syncsOnWindowThread), 0);
}

QTEST_MAIN(tst_SlowDisk)
#include "tst_slowdisk.moc"
