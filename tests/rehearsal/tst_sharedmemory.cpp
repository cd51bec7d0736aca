#include "frames.h"
#include "memoryfile.h"
#include "rehearsalname.h"

#include <QTest>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr SharedTime now = 5'000'000'000;
constexpr SharedTime second = 1'000'000'000;

std::unique_ptr<SharedMemory> memoryWithZones(int zones)
{
    auto memory = std::make_unique<SharedMemory>();
    openHost(*memory, {.build = 1700, .zoneCount = zones, .ready = true}, now);
    return memory;
}

} // namespace

class tst_SharedMemory : public QObject
{
    Q_OBJECT

private slots:
    void the_layout_is_that_of_version_3();
    void zeroed_memory_has_no_host();
    void an_opened_host_has_its_properties_and_output_disabled();
    void a_host_is_alive_for_a_second_after_its_last_beat_data();
    void a_host_is_alive_for_a_second_after_its_last_beat();
    void a_closed_host_is_gone_at_once();
    void foreign_memory_has_no_host();
    void a_zone_count_out_of_range_reads_as_zero_data();
    void a_zone_count_out_of_range_reads_as_zero();
    void the_file_is_created_once_and_found_again();
    void a_file_that_is_missing_or_too_small_is_not_attached();
    void a_foreign_file_is_resized_and_cleared();
    void a_name_that_could_leave_the_folder_is_refused_data();
    void a_name_that_could_leave_the_folder_is_refused();
};

void tst_SharedMemory::the_layout_is_that_of_version_3()
{
    // If one of these numbers changes, interfaceVersion must be incremented.
    QCOMPARE(interfaceVersion, 3U);
    QCOMPARE(sizeof(HostHeader), 40U);
    QCOMPARE(offsetof(HostHeader, version), 8U);
    QCOMPARE(offsetof(HostHeader, build), 12U);
    QCOMPARE(offsetof(HostHeader, zoneCount), 16U);
    QCOMPARE(offsetof(HostHeader, ready), 20U);
    QCOMPARE(offsetof(HostHeader, outputOn), 24U);
    QCOMPARE(offsetof(HostHeader, run), 28U);
    QCOMPARE(offsetof(HostHeader, heartbeat), 32U);
    QCOMPARE(offsetof(CallSlot, at), 8U);
    QCOMPARE(offsetof(CallSlot, process), 16U);
    QCOMPARE(offsetof(CallSlot, call), 24U);
    QCOMPARE(sizeof(CallSlot), 32U);
    QCOMPARE(offsetof(CallRing, calls), 8U);
    QCOMPARE(sizeof(CallRing), 8 + 64 * sizeof(CallSlot));
    QCOMPARE(offsetof(FrameSlot, sent), 8U);
    QCOMPARE(offsetof(FrameSlot, sentAt), 16U);
    QCOMPARE(offsetof(FrameSlot, pointCount), 24U);
    QCOMPARE(offsetof(FrameSlot, points), 28U);
    QCOMPARE(sizeof(FrameSlot), 163'872U);
    QCOMPARE(offsetof(ZoneRing, reading), 8U);
    QCOMPARE(sizeof(ZoneRing), 16 + 16 * sizeof(FrameSlot));
    QCOMPARE(sizeof(SharedMemory), sizeof(HostHeader) + sizeof(CallRing) + 8 * sizeof(ZoneRing));
}

void tst_SharedMemory::zeroed_memory_has_no_host()
{
    const auto memory = std::make_unique<SharedMemory>();
    QVERIFY(!isHostAlive(*memory, 1));
    QVERIFY(!isHostReady(*memory));
    QCOMPARE(hostZoneCount(*memory), 0);
    Frame frame;
    QVERIFY(!FrameReader(memory->zones[0]).take(frame));
}

void tst_SharedMemory::an_opened_host_has_its_properties_and_output_disabled()
{
    const auto memory = std::make_unique<SharedMemory>();
    setOutput(*memory, true);
    openHost(*memory, {.build = 1614, .zoneCount = 3, .ready = false}, now);
    QVERIFY(isHostAlive(*memory, now));
    QVERIFY(!isHostReady(*memory));
    QCOMPARE(hostBuild(*memory), 1614);
    QCOMPARE(hostZoneCount(*memory), 3);
    QVERIFY(!isOutputOn(*memory));
}

void tst_SharedMemory::a_host_is_alive_for_a_second_after_its_last_beat_data()
{
    QTest::addColumn<qint64>("beatAt");
    QTest::addColumn<bool>("alive");
    QTest::addRow("just now") << qint64(now) << true;
    QTest::addRow("a second ago") << qint64(now - second) << true;
    QTest::addRow("a second and a nanosecond ago") << qint64(now - second - 1) << false;
    QTest::addRow("a little ahead") << qint64(now + 1000) << true;
    QTest::addRow("ahead, from before a restart of the machine")
        << qint64(now + second + 1) << false;
    QTest::addRow("never") << qint64(0) << false;
    QTest::addRow("the lowest") << std::numeric_limits<qint64>::min() << false;
    QTest::addRow("the highest") << std::numeric_limits<qint64>::max() << false;
}

void tst_SharedMemory::a_host_is_alive_for_a_second_after_its_last_beat()
{
    QFETCH(qint64, beatAt);
    const auto memory = memoryWithZones(1);
    beat(*memory, beatAt);
    QTEST(isHostAlive(*memory, now), "alive");
}

void tst_SharedMemory::a_closed_host_is_gone_at_once()
{
    const auto memory = memoryWithZones(1);
    setOutput(*memory, true);
    closeHost(*memory);
    QVERIFY(!isHostAlive(*memory, now));
    QVERIFY(!isOutputOn(*memory));
}

void tst_SharedMemory::foreign_memory_has_no_host()
{
    const auto memory = memoryWithZones(1);
    memory->header.magic.write(memoryMagic + 1);
    QVERIFY(!isHostAlive(*memory, now));
    memory->header.magic.write(memoryMagic);
    memory->header.version.write(interfaceVersion + 1);
    QVERIFY(!isHostAlive(*memory, now));
    memory->header.version.write(interfaceVersion);
    QVERIFY(isHostAlive(*memory, now));
}

void tst_SharedMemory::a_zone_count_out_of_range_reads_as_zero_data()
{
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("zones");
    QTest::addRow("-1") << -1 << 0;
    QTest::addRow("0") << 0 << 0;
    QTest::addRow("1") << 1 << 1;
    QTest::addRow("8") << 8 << 8;
    QTest::addRow("9") << 9 << 0;
    QTest::addRow("the highest") << std::numeric_limits<int>::max() << 0;
}

void tst_SharedMemory::a_zone_count_out_of_range_reads_as_zero()
{
    QFETCH(int, written);
    const auto memory = memoryWithZones(written);
    QTEST(hostZoneCount(*memory), "zones");
}

void tst_SharedMemory::the_file_is_created_once_and_found_again()
{
    const RehearsalName name;
    MemoryFile host;
    QVERIFY2(host.create(name.path()), qPrintable(host.errorString()));
    openHost(*host.memory(), {.build = 1800, .zoneCount = 1, .ready = true}, now);
    MemoryFile game;
    QVERIFY(game.attach(name.path()));
    QCOMPARE(hostBuild(*game.memory()), 1800);
    writeFrame(*game.memory(), 0, {}, now);
    QCOMPARE(host.memory()->zones[0].newest.read(), 1U);
    // A restarted host finds it unchanged.
    MemoryFile again;
    QVERIFY(again.create(name.path()));
    QCOMPARE(again.memory()->zones[0].newest.read(), 1U);
    QCOMPARE(QFile(name.path()).size(), qint64(sizeof(SharedMemory)));
}

void tst_SharedMemory::a_file_that_is_missing_or_too_small_is_not_attached()
{
    const RehearsalName name;
    QVERIFY(!MemoryFile().attach(name.path()));
    QVERIFY(!QFile::exists(name.path()));
    QVERIFY(!MemoryFile().attach(QString()));
    QFile file(name.path());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(qint64(sizeof(SharedMemory)) - 1));
    QVERIFY(!MemoryFile().attach(name.path()));
}

void tst_SharedMemory::a_foreign_file_is_resized_and_cleared()
{
    const RehearsalName name;
    QFile other(name.path());
    QVERIFY(other.open(QIODevice::WriteOnly) && other.write(QByteArray(100'000, 'x')) == 100'000);
    other.close();
    MemoryFile host;
    QVERIFY(host.create(name.path()));
    openHost(*host.memory(), {.build = 1700, .zoneCount = 8, .ready = true}, now);
    QVERIFY(isHostAlive(*host.memory(), now));
    for (int zone = 0; zone < maxZones; ++zone) {
        FrameReader reader(host.memory()->zones[std::size_t(zone)]);
        Frame frame;
        QVERIFY(!reader.take(frame));
        QVERIFY(writeFrame(*host.memory(), zone, {}, now));
        QVERIFY(reader.take(frame));
    }
}

void tst_SharedMemory::a_name_that_could_leave_the_folder_is_refused_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("accepted");
    QTest::addRow("plain") << QByteArray("Show-2_b.1") << true;
    QTest::addRow("folder") << QByteArray("../x") << false;
    QTest::addRow("blank") << QByteArray("a b") << false;
    QTest::addRow("letter beyond ASCII") << QByteArray("\xc3\xa9") << false;
}

void tst_SharedMemory::a_name_that_could_leave_the_folder_is_refused()
{
    QFETCH(QByteArray, name);
    qputenv(rehearsalVariable, name);
    QTEST(!memoryFilePath().isEmpty(), "accepted");
    qunsetenv(rehearsalVariable);
    QVERIFY(memoryFilePath().endsWith(u"rallyvane-rehearsal-default"_s));
}

QTEST_GUILESS_MAIN(tst_SharedMemory)

#include "tst_sharedmemory.moc"
