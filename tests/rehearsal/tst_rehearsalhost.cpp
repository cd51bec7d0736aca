#include "frames.h"
#include "gamepicture.h"
#include "hostprocess.h"
#include "recorder.h"
#include "recording.h"
#include "rehearsalname.h"

#include <QImage>
#include <QLibrary>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

namespace {

int litPixels(const QString &file)
{
    const QImage picture(file);
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixelColor(x, y).value() > 200 ? 1 : 0;
    }
    return count;
}

} // namespace

class tst_RehearsalHost : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void it_takes_frames_and_says_how_many();
    void a_recording_is_shown_without_being_a_host();
    void a_snapshot_shows_the_light_only_with_output_enabled_data();
    void a_snapshot_shows_the_light_only_with_output_enabled();
    void a_recording_holds_every_frame_and_event();
    void a_recording_is_used_without_a_display();
    void a_killed_game_that_left_a_zone_lit_is_reported();
    void it_has_the_properties_given_as_options();
    void a_host_started_as_not_ready_is_not_ready();
    void it_starts_with_output_disabled_and_no_frames();
    void its_exit_is_noticed_at_once();
    void a_killed_host_expires_and_is_found_again();
    void a_stopped_host_delays_no_frame_and_counts_as_gone();
    void a_second_host_says_so_and_exits();

private:
    int send(const std::vector<LdbPoint> &points);

    std::unique_ptr<RehearsalName> m_name = std::make_unique<RehearsalName>();
    std::int32_t (*m_create)() = nullptr;
    std::int32_t (*m_destroy)() = nullptr;
    std::int32_t (*m_ready)() = nullptr;
    std::int32_t (*m_build)() = nullptr;
    std::int32_t (*m_zones)() = nullptr;
    std::int32_t (*m_enable)() = nullptr;
    std::int32_t (*m_send)(std::int32_t, std::int32_t, std::int32_t, const char *, std::int32_t,
        const LdbPoint *, const void *, std::int32_t, std::int32_t) = nullptr;
};

void tst_RehearsalHost::initTestCase()
{
    QLibrary library(QCoreApplication::applicationDirPath() + u"/BEYONDIOx64"_s);
    const auto resolve = [&library](auto *&function, const char *name) {
        function = reinterpret_cast<std::decay_t<decltype(function)>>(library.resolve(name));
        return function != nullptr;
    };
    QVERIFY(resolve(m_create, "ldbCreate"));
    QVERIFY(resolve(m_destroy, "ldbDestroy"));
    QVERIFY(resolve(m_ready, "ldbBeyondExeReady"));
    QVERIFY(resolve(m_build, "ldbGetBeyondVersion"));
    QVERIFY(resolve(m_zones, "ldbGetZoneCount"));
    QVERIFY(resolve(m_enable, "ldbEnableLaserOutput"));
    QVERIFY(resolve(m_send, "ldbSendFrame"));
}

void tst_RehearsalHost::cleanup()
{
    QTRY_COMPARE(m_ready(), 0);
    m_name.reset();
    m_name = std::make_unique<RehearsalName>();
}

int tst_RehearsalHost::send(const std::vector<LdbPoint> &points)
{
    return m_send(2, 0, 0, "SingleZone", static_cast<std::int32_t>(points.size()), points.data(),
        nullptr, 100, -1);
}

void tst_RehearsalHost::it_takes_frames_and_says_how_many()
{
    HostProcess host({});
    QTRY_COMPARE(m_ready(), 1);
    const auto picture = gamePicture(0);
    for (int i = 0; i < 10; ++i) // fewer than the ring holds, so that none can be missed
        QCOMPARE(send(picture), 1);
    QCOMPARE(host.end(), 0);
    const QRegularExpression summary(
        u"^The rehearsal host is running.\n10 frames, [0-9.]+ per second, %1 points in the last one, 0 missed\n$"_s
            .arg(picture.size()));
    const QString output = host.output();
    QVERIFY2(summary.match(output).hasMatch(), qPrintable(output));
}

void tst_RehearsalHost::a_recording_is_shown_without_being_a_host()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"show.rec"_s);
    Recorder recorder;
    QVERIFY(recorder.open(path));
    recorder.begin(0);
    recorder.write(Event{Event::OutputEnabled, 0});
    const LdbPoint left = {-20000, 0, 0, 0xFFFFFF, 0, 0, 1, 0};
    LdbPoint right = left;
    right.x = 20000;
    recorder.write(0, {.missed = 0, .sentAt = 0, .points = {left, right}});
    QVERIFY(recorder.finish());
    const QString picture = folder.filePath(u"picture.png"_s);
    HostProcess viewer({u"--open"_s, path, u"--snapshot"_s, picture, u"--seconds"_s, u"0.2"_s});
    QCOMPARE(viewer.result(), 0);
    QVERIFY(litPixels(picture) > 100);
    QVERIFY(!viewer.output().contains(u"The rehearsal host is running."_s));
    QVERIFY(!QFile::exists(m_name->path()));
}

void tst_RehearsalHost::a_snapshot_shows_the_light_only_with_output_enabled_data()
{
    QTest::addColumn<bool>("outputOn");
    QTest::addColumn<int>("zones");
    QTest::addRow("enabled") << true << 1;
    QTest::addRow("disabled") << false << 1;
    QTest::addRow("enabled, three zones") << true << 3;
}

void tst_RehearsalHost::a_snapshot_shows_the_light_only_with_output_enabled()
{
    QFETCH(bool, outputOn);
    QFETCH(int, zones);
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"snapshot.png"_s);
    HostProcess host({u"--snapshot"_s, file, u"--zones"_s, QString::number(zones)});
    QTRY_COMPARE(m_ready(), 1);
    if (outputOn)
        QCOMPARE(m_enable(), 1);
    QCOMPARE(send(gamePicture(0)), 1);
    QCOMPARE(host.end(), 0);
    QVERIFY(!QImage(file).isNull());
    if (outputOn)
        QVERIFY2(litPixels(file) > 100, qPrintable(QString::number(litPixels(file))));
    else
        QCOMPARE(litPixels(file), 0);
}

void tst_RehearsalHost::a_recording_holds_every_frame_and_event()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"show.rec"_s);
    HostProcess host({u"--record"_s, path});
    QTRY_COMPARE(m_ready(), 1);
    m_create();
    for (std::int32_t color = 1; color <= 3; ++color)
        QCOMPARE(send({LdbPoint{-5, 6, 0, color, 0, 0, 1, 0}}), 1);
    m_enable();
    QCOMPARE(send({}), 1);
    m_destroy();
    QCOMPARE(host.end(), 0);

    HostProcess reader({u"--open"_s, path, u"--dump-points"_s});
    QCOMPARE(reader.result(), 0);
    QStringList lines = reader.output().split(u'\n', Qt::SkipEmptyParts);
    double last = 0;
    for (QString &line : lines) {
        QStringList words = line.split(u' ');
        if (words.size() < 2 || words[0] == u"-5"_s)
            continue;
        const double time = words.takeAt(1).toDouble();
        QVERIFY(time >= last && time < 30'000);
        last = time;
        line = words.join(u' ');
    }
    const QString opened = u"opened "_s + QString::number(QCoreApplication::applicationPid());
    QCOMPARE(lines,
        (QStringList{u"started"_s, opened, u"frame 0 1 0"_s, u"-5 6 0 000001 1"_s, u"frame 0 1 0"_s,
            u"-5 6 0 000002 1"_s, u"frame 0 1 0"_s, u"-5 6 0 000003 1"_s, u"output on"_s,
            u"frame 0 0 0"_s, u"closed"_s, u"ended"_s}));
}

void tst_RehearsalHost::a_recording_is_used_without_a_display()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"show.rec"_s);
    {
        HostProcess host({u"--record"_s, path, u"--report"_s, folder.filePath(u"live.txt"_s)});
        QTRY_COMPARE(m_ready(), 1);
        QCOMPARE(send(gamePicture(0)), 1);
        QCOMPARE(host.end(), 0);
    }
    const auto read = [&folder](const QString &name) {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    qputenv("QT_QPA_PLATFORM", "none-such");
    HostProcess report({u"--open"_s, path, u"--report"_s, folder.filePath(u"again.txt"_s)});
    HostProcess ilda({u"--open"_s, path, u"--export-ilda"_s, folder.filePath(u"show.ild"_s)});
    qputenv("QT_QPA_PLATFORM", platform);
    QCOMPARE(report.result(), 0);
    QCOMPARE(ilda.result(), 0);
    QVERIFY(!read(u"live.txt"_s).isEmpty());
    QCOMPARE(read(u"again.txt"_s), read(u"live.txt"_s));
    QCOMPARE(read(u"show.ild"_s).size(), qsizetype(32 + 8 * gamePicture(0).size() + 32));
    QCOMPARE(ilda.output().trimmed(), folder.filePath(u"show.ild"_s));
}

void tst_RehearsalHost::a_killed_game_that_left_a_zone_lit_is_reported()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"report.txt"_s);
    const QString recording = folder.filePath(u"show.rec"_s);
    HostProcess host({u"--report"_s, path, u"--record"_s, recording});
    QTRY_COMPARE(m_ready(), 1);
    MemoryFile memory;
    QVERIFY(memory.attach(m_name->path()));
    // Memory that this process still holds is not cleared by the next host.
    const auto &newest = memory.memory()->zones[0].newest;
    const auto before = newest.read();
    QProcess game;
    game.start(QCoreApplication::applicationDirPath() + u"/framesender"_s, {u"60"_s});
    QTRY_VERIFY(newest.read() >= before + 5);
    game.kill();
    QVERIFY(game.waitForFinished());
    const auto isRecordedAsGone = [&recording] {
        Recording show;
        show.open(recording);
        // Frames may be seen to stop before or after that.
        for (qsizetype i = show.size() - 1; i >= 0 && !show.entry(i).isFrame(); --i) {
            if (show.event(i).kind == Event::GameGone)
                return true;
        }
        return false;
    };
    QTRY_VERIFY(isRecordedAsGone());
    QCOMPARE(host.end(), 0);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString report = QString::fromUtf8(file.readAll()).remove(u'\r');
    QVERIFY2(report.contains(u"  game gone: zone 1 not dark\n"_s), qPrintable(report));
    // On a busy machine the frames are seen to stop before the game is seen to be gone.
    static const QRegularExpression allLit(u"\nLeft lit: ([12]) of \\1 endings\\.\n"_s);
    QVERIFY2(allLit.match(report).hasMatch(), qPrintable(report));
}

void tst_RehearsalHost::it_has_the_properties_given_as_options()
{
    HostProcess host({u"--build"_s, u"1613"_s, u"--zones"_s, u"8"_s});
    QTRY_COMPARE(m_ready(), 1);
    QCOMPARE(m_build(), 1613);
    QCOMPARE(m_zones(), 8);
}

void tst_RehearsalHost::a_host_started_as_not_ready_is_not_ready()
{
    HostProcess host({u"--not-ready"_s, u"--zones"_s, u"2"_s});
    // It is ready once its zone count is set.
    QTRY_VERIFY((m_ready(), m_zones() == 2));
    QCOMPARE(m_ready(), 0);
}

void tst_RehearsalHost::it_starts_with_output_disabled_and_no_frames()
{
    {
        HostProcess first({});
        QTRY_COMPARE(m_ready(), 1);
        QCOMPARE(m_enable(), 1);
        QCOMPARE(send(gamePicture(0)), 1);
        first.kill();
        QVERIFY(first.waitForFinished());
    }
    MemoryFile file;
    QVERIFY(file.attach(m_name->path()));
    QVERIFY(isOutputOn(*file.memory()));
    HostProcess second({u"--build"_s, u"1800"_s});
    QTRY_VERIFY((m_ready(), m_build() == 1800));
    QVERIFY(!isOutputOn(*file.memory()));
    QCOMPARE(second.end(), 0);
    QVERIFY(second.output().contains(u"\n0 frames"_s));
}

void tst_RehearsalHost::its_exit_is_noticed_at_once()
{
    HostProcess host({});
    QTRY_COMPARE(m_ready(), 1);
    QCOMPARE(host.end(), 0);
    QCOMPARE(m_ready(), 0);
}

void tst_RehearsalHost::a_killed_host_expires_and_is_found_again()
{
    {
        HostProcess host({});
        QTRY_COMPARE(m_ready(), 1);
        host.kill();
        QVERIFY(host.waitForFinished());
    }
    QTRY_COMPARE(m_ready(), 0);
    HostProcess again({u"--build"_s, u"1701"_s});
    QTRY_COMPARE(m_ready(), 1);
    QCOMPARE(m_build(), 1701);
    QCOMPARE(send(gamePicture(0)), 1);
}

void tst_RehearsalHost::a_stopped_host_delays_no_frame_and_counts_as_gone()
{
    const QString kill = QStandardPaths::findExecutable(u"kill"_s);
    if (kill.isEmpty())
        QSKIP("This system cannot stop a process.");
    HostProcess host({});
    QTRY_COMPARE(m_ready(), 1);
    MemoryFile memory;
    QVERIFY(memory.attach(m_name->path()));
    QCOMPARE(QProcess::execute(kill, {u"-STOP"_s, QString::number(host.processId())}), 0);
    beat(*memory.memory(), sharedNow()); // expires in a second, however long the stop took
    const quint64 before = memory.memory()->zones[0].newest.read();
    quint64 sent = 0;
    while (send(gamePicture(0)) == 1) {
        ++sent;
        QThread::usleep(500);
    }
    QVERIFY(sent > framesPerZone);
    // A frame that was being read when the host was stopped is skipped.
    QVERIFY(memory.memory()->zones[0].newest.read() - before >= sent);
    QCOMPARE(m_ready(), 0);
    QCOMPARE(QProcess::execute(kill, {u"-CONT"_s, QString::number(host.processId())}), 0);
    QTRY_COMPARE(m_ready(), 1);
    QCOMPARE(host.end(), 0);
}

void tst_RehearsalHost::a_second_host_says_so_and_exits()
{
    HostProcess first({});
    QTRY_COMPARE(m_ready(), 1);
    HostProcess second({u"--build"_s, u"1800"_s});
    QCOMPARE(second.result(), 1);
    QVERIFY(!second.output().contains(u"is running"_s));
    QVERIFY(second.errors().endsWith(u"A rehearsal host is running already.\n"_s));
    QCOMPARE(m_ready(), 1);
    QCOMPARE(m_build(), 1700);
}

QTEST_GUILESS_MAIN(tst_RehearsalHost)

#include "tst_rehearsalhost.moc"
