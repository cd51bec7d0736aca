// For systems where a process can limit the size of the files that it writes, to simulate a full
// disk.

#include "debuglines.h"
#include "settings.h"
#include "settingsfile.h"
#include "workingfolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using settingsfile::contentOf;

namespace {

const QString fileName = u".pong"_s;
/// The argument of a second process of this test.
const QString changeAndHang = u"change-and-hang"_s;

/// The beginning of a file that is longer than the lock file of QSettings.
QByteArray longText()
{
    return "[General]\nAuthor=" + QByteArray(300, 'x') + '\n';
}

/// Its last line.
QByteArray lastLine()
{
    return "SensR=600\n";
}

/// Waits until the log says that the settings cannot be written.
void waitForFailure(DebugLines &log)
{
    const QRegularExpression failure(u"^The settings file cannot be written: .+"_s);
    QVERIFY(QTest::qWaitFor([&] { return !log.takeAll().filter(failure).isEmpty(); }));
}

/// Limits the size of files for its lifetime, in bytes.
class Room
{
public:
    explicit Room(qsizetype bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit = {rlim_t(bytes), m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~Room() { setrlimit(RLIMIT_FSIZE, &m_before); }
    Q_DISABLE_COPY_MOVE(Room)

private:
    rlimit m_before = {};
};

} // namespace

class tst_SettingsOnDisk : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void without_room_for_a_copy_a_damaged_file_is_unchanged_data();
    void without_room_for_a_copy_a_damaged_file_is_unchanged();
    void without_room_for_its_beginning_a_file_that_is_too_long_is_unchanged();
    void with_room_for_only_the_copy_the_file_is_unchanged();
    void without_room_for_a_change_the_file_is_unchanged_data();
    void without_room_for_a_change_the_file_is_unchanged();
    void a_change_without_room_is_written_once_there_is_room();
    void each_change_is_in_the_file_soon_without_an_event_loop();
    void a_write_keeps_the_link_and_the_permissions_of_the_file();
    void the_groups_of_others_stay_in_the_file();
    void a_change_outlives_a_program_that_is_killed();

private:
    std::optional<WorkingFolder> m_folder;
};

void tst_SettingsOnDisk::init()
{
    m_folder.emplace();
}

void tst_SettingsOnDisk::cleanup()
{
    m_folder.reset();
}

void tst_SettingsOnDisk::without_room_for_a_copy_a_damaged_file_is_unchanged_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addRow("a line without a key") << QByteArray("[General]\nBallSpeed=25\nKeyboard\n");
    QTest::addRow("a typed value") << QByteArray("[General]\nBallSpeed=25\nSensL=@Invalid()\n");
}

void tst_SettingsOnDisk::without_room_for_a_copy_a_damaged_file_is_unchanged()
{
    QFETCH(QByteArray, content);
    WorkingFolder::write(fileName, content);
    QStringList lines;
    {
        DebugLines log;
        const Room room(content.size() - 1);
        const auto store = settings::open();
        settings::write(*store, settings::ballSpeed, 30);
        QCOMPARE(settings::read(*store, settings::ballSpeed), 30);
        lines = log.takeAll();
    }
    QCOMPARE(lines,
        QStringList{
            u"The settings file is damaged and cannot be copied; changes will not be kept"_s});
    QCOMPARE(contentOf(fileName), content);
    QCOMPARE(WorkingFolder::files(), QStringList{fileName});
}

void tst_SettingsOnDisk::without_room_for_its_beginning_a_file_that_is_too_long_is_unchanged()
{
    const QByteArray content = "[General]\n" + QByteArray("Noise=1\n").repeated(10'000);
    WorkingFolder::write(fileName, content);
    {
        const Room room(1000);
        const auto store = settings::open();
        settings::write(*store, settings::ballSpeed, 30);
        QCOMPARE(settings::read(*store, settings::ballSpeed), 30);
    }
    QCOMPARE(contentOf(fileName), content);
    QCOMPARE(WorkingFolder::files(), QStringList{fileName});
}

void tst_SettingsOnDisk::with_room_for_only_the_copy_the_file_is_unchanged()
{
    const QByteArray content = "[General]\nBallSpeed=25\nSensL=@Invalid()\n";
    WorkingFolder::write(fileName, content);
    {
        const Room room(content.size());
        const auto store = settings::open();
        settings::write(*store, settings::ballSpeed, 30);
    }
    QCOMPARE(contentOf(fileName), content);
    QCOMPARE(contentOf(u".pong.damaged"_s), content);
}

void tst_SettingsOnDisk::without_room_for_a_change_the_file_is_unchanged_data()
{
    QTest::addColumn<int>("missing");
    QTest::addRow("the last byte") << 1;
    QTest::addRow("the last line") << int(lastLine().size());
    QTest::addRow("the last line and a byte") << int(lastLine().size()) + 1;
    QTest::addRow("the text") << int(longText().size());
}

void tst_SettingsOnDisk::without_room_for_a_change_the_file_is_unchanged()
{
    QFETCH(int, missing);
    const QByteArray before = longText() + "SensL=99\n" + lastLine();
    WorkingFolder::write(fileName, before);
    {
        DebugLines log;
        const Room room(before.size() + 1 - missing);
        const auto store = settings::open();
        settings::write(*store, settings::sensitivity[Side::Left], 300);
        waitForFailure(log);
        QCOMPARE(contentOf(fileName), before);
    }
    QCOMPARE(contentOf(fileName), before);
    QCOMPARE(WorkingFolder::files(), QStringList{fileName});
}

void tst_SettingsOnDisk::a_change_without_room_is_written_once_there_is_room()
{
    WorkingFolder::write(fileName, "[General]\nBallSpeed=25\n");
    const auto store = settings::open();
    {
        DebugLines log;
        const Room room(10);
        settings::write(*store, settings::sensitivity[Side::Left], 300);
        waitForFailure(log);
    }
    settings::write(*store, settings::sensitivity[Side::Right], 400);
    QTRY_COMPARE(
        contentOf(fileName), QByteArray("[General]\nBallSpeed=25\nSensL=300\nSensR=400\n"));
}

void tst_SettingsOnDisk::each_change_is_in_the_file_soon_without_an_event_loop()
{
    const auto store = settings::open();
    for (const int speed : {25, 26, 27}) {
        settings::write(*store, settings::ballSpeed, speed);
        const QByteArray content = "[General]\nBallSpeed=" + QByteArray::number(speed) + '\n';
        QElapsedTimer elapsed;
        elapsed.start();
        while (contentOf(fileName) != content && !elapsed.hasExpired(30000))
            QThread::msleep(1);
        QCOMPARE(contentOf(fileName), content);
    }
}

void tst_SettingsOnDisk::a_write_keeps_the_link_and_the_permissions_of_the_file()
{
    constexpr auto permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    WorkingFolder::write(fileName, "[General]\nSensR=600\n");
    QVERIFY(QDir().mkdir(u"elsewhere"_s) && QFile::rename(fileName, u"elsewhere/settings"_s)
        && QFile::setPermissions(u"elsewhere/settings"_s, permissions)
        && QFile::link(u"elsewhere/settings"_s, fileName));
    settings::write(*settings::open(), settings::ballSpeed, 30);
    QVERIFY(QFileInfo(fileName).isSymLink());
    QCOMPARE(
        contentOf(u"elsewhere/settings"_s), QByteArray("[General]\nBallSpeed=30\nSensR=600\n"));
    QCOMPARE(QFile::permissions(u"elsewhere/settings"_s) & ~(QFile::ReadUser | QFile::WriteUser),
        permissions);
}

void tst_SettingsOnDisk::the_groups_of_others_stay_in_the_file()
{
    const QByteArray groups = "\n[Deep]\nGroup\\Key=a\n\n[%General]\nx=1\n"
                              "\n[Other]\nList=1, 2\nName=@@x\nSpaced=\" a;b \"\n";
    WorkingFolder::write(fileName, "[General]\nSensR=600\n" + groups);
    const auto store = settings::open();
    settings::write(*store, settings::ballSpeed, 30);
    QTRY_COMPARE(contentOf(fileName), "[General]\nBallSpeed=30\nSensR=600\n" + groups);
}

void tst_SettingsOnDisk::a_change_outlives_a_program_that_is_killed()
{
    WorkingFolder::write(fileName, "[General]\nBallSpeed=25\nSensR=600\n");
    QProcess program;
    program.start(QCoreApplication::applicationFilePath(), {changeAndHang});
    QTRY_COMPARE(contentOf(fileName), QByteArray("[General]\nBallSpeed=30\nSensR=600\n"));
    program.kill();
    QVERIFY(program.waitForFinished());
    QCOMPARE(settings::read(*settings::open(), settings::ballSpeed), 30);
    QCOMPARE(WorkingFolder::files(), QStringList{fileName});
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(changeAndHang)) {
        const auto store = settings::open();
        settings::write(*store, settings::ballSpeed, 30);
        for (;;)
            pause();
    }
    tst_SettingsOnDisk test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_settingsondisk.moc"
