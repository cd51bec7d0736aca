// For systems on which a program can replace the function that syncs a file, to simulate a slow
// disk.

#include "runningwindow.h"
#include "settings.h"

#include <QDir>
#include <QFile>
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

QSemaphore &release()
{
    static QSemaphore semaphore;
    return semaphore;
}

int syncFile()
{
    ++begun;
    if (QThread::currentThread() == qApp->thread())
        ++syncsOnWindowThread;
    else if (isSlow)
        release().acquire();
    ++done;
    return 0;
}

/// Every sync of another thread hangs until hangNoLonger().
void hangNoLonger()
{
    isSlow = false;
    release().release();
}

bool runsThread(const QByteArray &name)
{
    const QDir threads(u"/proc/self/task"_s);
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(threads.filePath(thread + u"/comm"_s));
        if (file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == name)
            return true;
    }
    return false;
}

/// Settings that the first load does not change.
constexpr auto settingsFile = "[General]\nControlModeLeft=XBOX\nControlModeRight=XBOX\n";

QByteArray content()
{
    QFile file(u".pong"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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
    void cleanup();
    void the_window_works_and_the_ball_moves_while_the_disk_hangs();
    void the_laser_is_dark_and_the_window_ends_while_the_disk_hangs();
};

void tst_SlowDisk::init()
{
    syncsOnWindowThread = 0;
    begun = 0;
    done = 0;
    release().tryAcquire(release().available());
    isSlow = true;
}

void tst_SlowDisk::cleanup()
{
    hangNoLonger(); // also after a failure, or the writer would keep the process
}

void tst_SlowDisk::the_window_works_and_the_ball_moves_while_the_disk_hangs()
{
    RunningWindow running(settingsFile);
    settings::restBeforeWriting = SettingsWriter::usualRest;
    running.open();
    running.waitForStatus();
    running.click(u"showButton"_s);
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
    QTRY_VERIFY(content().contains("BallSpeed=23"));
    running.close();
    QCOMPARE(int(syncsOnWindowThread), 0);
}

void tst_SlowDisk::the_laser_is_dark_and_the_window_ends_while_the_disk_hangs()
{
    RunningWindow running(settingsFile);
    settings::restBeforeWriting = SettingsWriter::usualRest;
    running.open();
    running.waitForStatus();
    running.click(u"showButton"_s);
    running.waitForFrames(10);
    QTest::keyClick(running.find(u"sensLSlider"_s), Qt::Key_Right);
    running.host.takeCalls();
    running.close();
    QCOMPARE(int(begun), 1);
    QCOMPARE(int(done), 0); // still hanging
    QCOMPARE(running.host.takeCalls().filter(u"ldbSendFrame"_s).constLast(),
        u"ldbSendFrame 2 0 0 SingleZone 0 points null 100 -1"_s);
    hangNoLonger();
    QTRY_VERIFY(content().contains("SensL=513")); // nothing is lost
    QTRY_VERIFY(!runsThread("settings")); // and the store is deleted at last
    QCOMPARE(int(syncsOnWindowThread), 0);
}

QTEST_MAIN(tst_SlowDisk)
#include "tst_slowdisk.moc"
