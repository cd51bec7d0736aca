#include "frames.h"
#include "gamecalls.h"
#include "rehearsalname.h"

#include <QLibrary>
#include <QTest>

#include <array>
#include <atomic>
#include <cstring>
#include <limits>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr SharedTime second = 1'000'000'000;

// The library's functions, as the game resolves them.
namespace library {
#define DECLARE_POINTER(name, parameters, arguments) std::int32_t(*name) parameters = nullptr;
LDB_ENTRY_POINTS(DECLARE_POINTER)
} // namespace library
using namespace library;

std::int32_t send(std::int32_t zone, std::int32_t count, const LdbPoint *points)
{
    return ldbSendFrame(2, zone, 0, "SingleZone", count, points, nullptr, 100, -1);
}

/// A host in this test: its side of the shared memory.
class TestHost
{
public:
    explicit TestHost(const HostInfo &info = {.build = 1700, .zoneCount = 2, .ready = true})
    {
        if (!m_file.create(m_name.path()))
            qFatal("%s", qPrintable(m_file.errorString()));
        openHost(memory(), info, sharedNow());
    }
    ~TestHost() { closeHost(memory()); }

    SharedMemory &memory() { return *m_file.memory(); }
    QString path() const { return m_name.path(); }

private:
    RehearsalName m_name;
    MemoryFile m_file;
};

} // namespace

class tst_HostLibrary : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup() { ldbDestroy(); }
    void without_memory_there_is_no_host();
    void the_host_is_ready_when_it_says_so_data();
    void the_host_is_ready_when_it_says_so();
    void the_host_is_gone_when_its_heartbeat_stops_and_back_when_it_resumes();
    void a_host_that_closes_is_gone_at_once();
    void a_host_that_was_replaced_during_a_session_is_gone_until_the_session_ends();
    void a_host_that_comes_back_in_a_new_file_is_found();
    void garbage_in_the_memory_is_no_host_data();
    void garbage_in_the_memory_is_no_host();
    void the_version_and_the_zone_count_come_from_the_host();
    void the_output_switch_reaches_the_host();
    void output_is_switched_off_in_a_host_that_seems_gone_too();
    void session_and_output_calls_are_stored_with_their_times();
    void the_end_of_a_session_is_not_stored_in_a_later_host();
    void a_frame_reaches_its_zone();
    void an_empty_frame_reaches_its_zone();
    void invalid_arguments_touch_no_memory_data();
    void invalid_arguments_touch_no_memory();
    void functions_that_the_game_never_calls_return_zero();
    void output_and_frames_may_be_used_from_two_threads_at_once();
};

void tst_HostLibrary::initTestCase()
{
    QLibrary host(QCoreApplication::applicationDirPath() + u"/BEYONDIOx64"_s);
    QVERIFY2(host.load(), qPrintable(host.errorString()));
    int found = 0;
#define RESOLVE(name, parameters, arguments)                                  \
    name = reinterpret_cast<std::int32_t(*) parameters>(host.resolve(#name)); \
    QVERIFY2(name, #name);                                                    \
    ++found;
    LDB_ENTRY_POINTS(RESOLVE)
    QCOMPARE(found, 34);
}

void tst_HostLibrary::without_memory_there_is_no_host()
{
    const RehearsalName name;
    QCOMPARE(ldbBeyondExeReady(), 0);
    QCOMPARE(ldbGetBeyondVersion(), 0);
    QCOMPARE(ldbGetZoneCount(), 0);
    QCOMPARE(ldbEnableLaserOutput(), 0);
    QCOMPARE(ldbDisableLaserOutput(), 0);
    const LdbPoint point = {};
    QCOMPARE(send(0, 1, &point), 0);
    QVERIFY(!QFile::exists(name.path()));
}

void tst_HostLibrary::the_host_is_ready_when_it_says_so_data()
{
    QTest::addColumn<bool>("ready");
    QTest::addRow("ready") << true;
    QTest::addRow("not ready") << false;
}

void tst_HostLibrary::the_host_is_ready_when_it_says_so()
{
    QFETCH(bool, ready);
    TestHost host({.build = 1700, .zoneCount = 1, .ready = ready});
    QCOMPARE(ldbBeyondExeReady(), ready ? 1 : 0);
    QCOMPARE(ldbCreate(), ready ? 1 : 0);
    QCOMPARE(ldbGetBeyondVersion(), 1700);
}

void tst_HostLibrary::the_host_is_gone_when_its_heartbeat_stops_and_back_when_it_resumes()
{
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    beat(host.memory(), sharedNow() - second - 1);
    QCOMPARE(ldbBeyondExeReady(), 0);
    QCOMPARE(ldbGetBeyondVersion(), 0);
    QCOMPARE(ldbGetZoneCount(), 0);
    QCOMPARE(ldbEnableLaserOutput(), 0);
    QVERIFY(!isOutputOn(host.memory()));
    QCOMPARE(send(0, 0, nullptr), 0);
    beat(host.memory(), sharedNow());
    QCOMPARE(ldbBeyondExeReady(), 1);
    QCOMPARE(send(0, 0, nullptr), 1);
}

void tst_HostLibrary::a_host_that_closes_is_gone_at_once()
{
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    closeHost(host.memory());
    QCOMPARE(ldbBeyondExeReady(), 0);
    openHost(host.memory(), {.build = 1800, .zoneCount = 3, .ready = true}, sharedNow());
    QCOMPARE(ldbBeyondExeReady(), 1);
    QCOMPARE(ldbGetBeyondVersion(), 1800);
    QCOMPARE(ldbGetZoneCount(), 3);
}

void tst_HostLibrary::a_host_that_was_replaced_during_a_session_is_gone_until_the_session_ends()
{
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    ldbCreate();
    QCOMPARE(ldbBeyondExeReady(), 1);
    openHost(host.memory(), {}, sharedNow());
    QCOMPARE(ldbBeyondExeReady(), 0);
    QCOMPARE(ldbBeyondExeReady(), 0);
    ldbDestroy();
    QCOMPARE(ldbBeyondExeReady(), 1);
    ldbCreate();
    QCOMPARE(ldbBeyondExeReady(), 1);
    ldbDestroy();
}

void tst_HostLibrary::a_host_that_comes_back_in_a_new_file_is_found()
{
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    closeHost(host.memory());
    if (!QFile::remove(host.path()))
        QSKIP("This system cannot remove a file that is in use.");
    QCOMPARE(ldbBeyondExeReady(), 0);
    MemoryFile file;
    QVERIFY(file.create(host.path()));
    openHost(*file.memory(), {.build = 1701, .zoneCount = 1, .ready = true}, sharedNow());
    QCOMPARE(ldbBeyondExeReady(), 1);
    QCOMPARE(ldbGetBeyondVersion(), 1701);
    closeHost(*file.memory());
}

void tst_HostLibrary::garbage_in_the_memory_is_no_host_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addRow("nothing") << QByteArray();
    QTest::addRow("one byte") << QByteArray("x");
    QTest::addRow("one byte too few") << QByteArray(sizeof(SharedMemory) - 1, '\0');
    QTest::addRow("zeros") << QByteArray(sizeof(SharedMemory), '\0');
    QTest::addRow("ones") << QByteArray(sizeof(SharedMemory), '\xff');
}

void tst_HostLibrary::garbage_in_the_memory_is_no_host()
{
    QFETCH(QByteArray, content);
    const RehearsalName name;
    QFile file(name.path());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)); // not refused for these
    file.close();
    QCOMPARE(ldbBeyondExeReady(), 0);
    QCOMPARE(ldbGetZoneCount(), 0);
    const LdbPoint point = {};
    QCOMPARE(send(0, 1, &point), 0);
    QVERIFY(file.open(QIODevice::ReadOnly) && file.readAll() == content);
}

void tst_HostLibrary::the_version_and_the_zone_count_come_from_the_host()
{
    TestHost host({.build = -7, .zoneCount = 5, .ready = true});
    QCOMPARE(ldbBeyondExeReady(), 1);
    QCOMPARE(ldbGetBeyondVersion(), -7);
    QCOMPARE(ldbGetZoneCount(), 5);
    host.memory().header.zoneCount.write(std::numeric_limits<qint32>::max());
    QCOMPARE(ldbGetZoneCount(), 0);
    QCOMPARE(send(7, 0, nullptr), 0);
}

void tst_HostLibrary::the_output_switch_reaches_the_host()
{
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    QVERIFY(!isOutputOn(host.memory()));
    QCOMPARE(ldbEnableLaserOutput(), 1);
    QVERIFY(isOutputOn(host.memory()));
    QCOMPARE(ldbDisableLaserOutput(), 1);
    QVERIFY(!isOutputOn(host.memory()));
}

void tst_HostLibrary::output_is_switched_off_in_a_host_that_seems_gone_too()
{
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    QCOMPARE(ldbEnableLaserOutput(), 1);
    beat(host.memory(), sharedNow() - 2 * second);
    QCOMPARE(ldbDisableLaserOutput(), 0);
    QVERIFY(!isOutputOn(host.memory()));
}

void tst_HostLibrary::session_and_output_calls_are_stored_with_their_times()
{
    TestHost host;
    CallReader calls(host.memory().calls);
    const SharedTime before = sharedNow();
    QCOMPARE(ldbBeyondExeReady(), 1);
    QVERIFY(!calls.take());
    ldbCreate();
    ldbEnableLaserOutput();
    ldbDisableLaserOutput();
    ldbDestroy();
    ldbDestroy(); // the session is already closed
    SharedTime last = before;
    for (const GameCall expected : {GameCall::OpenSession, GameCall::EnableOutput,
             GameCall::DisableOutput, GameCall::CloseSession}) {
        const auto call = calls.take();
        QVERIFY(call);
        QCOMPARE(call->call, expected);
        QCOMPARE(call->process, quint64(QCoreApplication::applicationPid()));
        QVERIFY(call->at >= last && call->at <= sharedNow());
        last = call->at;
    }
    QVERIFY(!calls.take());
}

void tst_HostLibrary::the_end_of_a_session_is_not_stored_in_a_later_host()
{
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    ldbCreate();
    openHost(host.memory(), {}, sharedNow());
    CallReader calls(host.memory().calls);
    ldbDestroy();
    QVERIFY(!calls.take());
}

void tst_HostLibrary::a_frame_reaches_its_zone()
{
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    FrameReader first(host.memory().zones[0]);
    FrameReader second(host.memory().zones[1]);
    const std::array<LdbPoint, 2> points = {
        LdbPoint{-32000, 5000, 0, 0, 0, 0, 3, 0},
        LdbPoint{32000, -5000, 0, 0x0030FF, 0, 0, 1, 0},
    };
    const SharedTime before = sharedNow();
    QCOMPARE(send(1, 2, points.data()), 1);
    Frame frame;
    QVERIFY(!first.take(frame));
    QVERIFY(second.take(frame));
    QVERIFY(frame.sentAt >= before && frame.sentAt <= sharedNow());
    QCOMPARE(frame.points.size(), 2U);
    QCOMPARE(std::memcmp(frame.points.data(), points.data(), sizeof points), 0);
}

void tst_HostLibrary::an_empty_frame_reaches_its_zone()
{
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    FrameReader reader(host.memory().zones[0]);
    Frame frame;
    frame.points.resize(3);
    QCOMPARE(send(0, 0, nullptr), 1);
    QVERIFY(reader.take(frame));
    QVERIFY(frame.points.empty());
}

void tst_HostLibrary::invalid_arguments_touch_no_memory_data()
{
    QTest::addColumn<int>("zone");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("withPoints");
    const int lowest = std::numeric_limits<int>::min();
    const int highest = std::numeric_limits<int>::max();
    QTest::addRow("zone -1") << -1 << 1 << true;
    QTest::addRow("zone after the last") << 2 << 1 << true;
    QTest::addRow("the lowest zone") << lowest << 1 << true;
    QTest::addRow("the highest zone") << highest << 1 << true;
    QTest::addRow("-1 points") << 0 << -1 << true;
    QTest::addRow("8193 points") << 0 << 8193 << true;
    QTest::addRow("the lowest count") << 0 << lowest << true;
    QTest::addRow("the highest count") << 0 << highest << true;
    QTest::addRow("a count of one without points") << 0 << 1 << false;
}

void tst_HostLibrary::invalid_arguments_touch_no_memory()
{
    QFETCH(int, zone);
    QFETCH(int, count);
    QFETCH(bool, withPoints);
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    const auto before = std::make_unique<SharedMemory>(host.memory());
    const LdbPoint point = {};
    QCOMPARE(send(zone, count, withPoints ? &point : nullptr), 0);
    QCOMPARE(std::memcmp(&host.memory(), before.get(), sizeof(SharedMemory)), 0);
}

void tst_HostLibrary::functions_that_the_game_never_calls_return_zero()
{
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    const auto before = std::make_unique<SharedMemory>(host.memory());
    for (const auto function :
        {ldbGetDllVersion, ldbBeyondExeStarted, ldbBlackout, ldbGetProjectorCount,
            ldbGetProjectorEvent, ldbCreateZoneImage, ldbCreateProjectorImage, ldbDeleteZoneImage,
            ldbDeleteProjectorImage, ldbSendFrameToImage, ldbGetTimeCode, ldbSetTimeCode,
            ldbSetKinect, ldbSetDmx, ldbSetChannels, ldbTimelinePlay, ldbTimelineStop,
            ldbTimelineGetPlaying, ldbTimelineSetPos, ldbTimelineGetPos, ldbTimelineGetDuration,
            ldbTimelineSetOnline, ldbTimelineGetOnline, ldbGetProjectorSerial})
        QCOMPARE(function(), 0);
    QCOMPARE(ldbSetMidiIn(0x90, 60, 127, 255), 0);
    QCOMPARE(ldbSetMidiOut(0x90, 60, 127, 255), 0);
    QCOMPARE(std::memcmp(&host.memory(), before.get(), sizeof(SharedMemory)), 0);
}

void tst_HostLibrary::output_and_frames_may_be_used_from_two_threads_at_once()
{
    TestHost host;
    QCOMPARE(ldbBeyondExeReady(), 1);
    constexpr int frames = 3000;
    std::atomic<bool> playing = true;
    int taken = 0;
    std::jthread game([&] {
        const LdbPoint point = {};
        for (int i = 0; i < frames; ++i)
            taken += send(i % 2, 1, &point);
        playing = false;
    });
    int readyTimes = 0;
    for (int i = 0; playing || i < 100; ++i) {
        i % 2 == 0 ? ldbEnableLaserOutput() : ldbDisableLaserOutput();
        ldbGetZoneCount();
        readyTimes += ldbBeyondExeReady();
        beat(host.memory(), sharedNow());
    }
    game.join();
    QVERIFY(readyTimes > 0);
    QCOMPARE(taken, frames);
    QCOMPARE(host.memory().zones[0].newest.read(), quint64(frames / 2));
}

QTEST_GUILESS_MAIN(tst_HostLibrary)

#include "tst_hostlibrary.moc"
