#include "frames.h"

#include <QTest>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <thread>

namespace {

constexpr SharedTime now = 5'000'000'000;

std::unique_ptr<SharedMemory> memoryWithZones(int zones)
{
    auto memory = std::make_unique<SharedMemory>();
    openHost(*memory, {.build = 1700, .zoneCount = zones, .ready = true}, now);
    return memory;
}

/// A frame with its number in every point.
std::vector<LdbPoint> frameOf(int number, std::size_t points)
{
    std::vector<LdbPoint> frame(points);
    std::ranges::fill(frame, LdbPoint{float(number), float(-number), 0, number, 0, 0, 1, 0});
    return frame;
}

int numberOf(const Frame &frame)
{
    return frame.points.empty() ? 0 : frame.points.front().color;
}

} // namespace

class tst_Frames : public QObject
{
    Q_OBJECT

private slots:
    void frames_are_taken_once_and_in_order();
    void a_frame_arrives_whole();
    void a_reader_starts_after_the_newest_frame();
    void each_zone_has_its_own_ring();
    void overwritten_frames_count_as_missed();
    void a_frame_being_written_is_missed();
    void a_frame_with_an_invalid_count_is_missed();
    void a_corrupt_newest_number_yields_no_frame_and_then_the_next_data();
    void a_corrupt_newest_number_yields_no_frame_and_then_the_next();
    void frame_numbers_may_wrap_around();
    void frames_out_of_range_are_refused();
    void a_frame_being_read_is_not_overwritten();
    void a_reader_that_died_while_reading_costs_no_frame();
    void a_new_host_starts_with_no_frame_being_read();
    void a_torn_frame_is_never_taken();
    void a_reader_that_never_rests_costs_no_frame();
};

void tst_Frames::frames_are_taken_once_and_in_order()
{
    const auto memory = memoryWithZones(1);
    FrameReader reader(memory->zones[0]);
    Frame frame;
    QVERIFY(!reader.take(frame));
    for (int number = 1; number <= 16; ++number)
        QVERIFY(writeFrame(*memory, 0, frameOf(number, 2), now + number));
    for (int number = 1; number <= 16; ++number) {
        QVERIFY(reader.take(frame));
        QCOMPARE(numberOf(frame), number);
        QCOMPARE(frame.sentAt, now + number);
        QCOMPARE(frame.missed, 0U);
    }
    QVERIFY(!reader.take(frame));
}

void tst_Frames::a_frame_arrives_whole()
{
    const auto memory = memoryWithZones(1);
    FrameReader reader(memory->zones[0]);
    const LdbPoint first = {-32000.5F, 31999.0F, 1.0F, 0x0030FF, 1, 2, 3, 4};
    const LdbPoint second = {0.25F, -0.25F, 0.0F, -1, 0, 0, 255, 0};
    writeFrame(*memory, 0, std::vector{first, second}, now);
    Frame frame;
    QVERIFY(reader.take(frame));
    QCOMPARE(frame.points.size(), 2U);
    QCOMPARE(std::memcmp(frame.points.data(), &first, sizeof first), 0);
    QCOMPARE(std::memcmp(&frame.points[1], &second, sizeof second), 0);
    writeFrame(*memory, 0, {}, now);
    QVERIFY(reader.take(frame));
    QVERIFY(frame.points.empty());
    writeFrame(*memory, 0, frameOf(7, ldbMaxPoints), now);
    QVERIFY(reader.take(frame));
    QCOMPARE(frame.points.size(), std::size_t(ldbMaxPoints));
    QCOMPARE(frame.points.back().color, 7);
}

void tst_Frames::a_reader_starts_after_the_newest_frame()
{
    const auto memory = memoryWithZones(1);
    writeFrame(*memory, 0, frameOf(1, 2), now);
    FrameReader reader(memory->zones[0]);
    Frame frame;
    QVERIFY(!reader.take(frame));
    writeFrame(*memory, 0, frameOf(2, 2), now);
    QVERIFY(reader.take(frame));
    QCOMPARE(numberOf(frame), 2);
    QCOMPARE(frame.missed, 0U);
}

void tst_Frames::each_zone_has_its_own_ring()
{
    const auto memory = memoryWithZones(2);
    FrameReader first(memory->zones[0]);
    FrameReader second(memory->zones[1]);
    writeFrame(*memory, 1, frameOf(5, 1), now);
    Frame frame;
    QVERIFY(!first.take(frame));
    QVERIFY(second.take(frame));
    QCOMPARE(numberOf(frame), 5);
}

void tst_Frames::overwritten_frames_count_as_missed()
{
    const auto memory = memoryWithZones(1);
    FrameReader reader(memory->zones[0]);
    for (int number = 1; number <= 20; ++number)
        writeFrame(*memory, 0, frameOf(number, 1), now);
    Frame frame;
    QVERIFY(reader.take(frame));
    QCOMPARE(numberOf(frame), 5);
    QCOMPARE(frame.missed, 4U);
    QVERIFY(reader.take(frame));
    QCOMPARE(frame.missed, 0U);
}

void tst_Frames::a_frame_being_written_is_missed()
{
    const auto memory = memoryWithZones(1);
    FrameReader reader(memory->zones[0]);
    for (int number = 1; number <= 3; ++number)
        writeFrame(*memory, 0, frameOf(number, 1), now);
    memory->zones[0].slotOf(2).number.write(0);
    Frame frame;
    QVERIFY(reader.take(frame));
    QCOMPARE(numberOf(frame), 1);
    QVERIFY(reader.take(frame));
    QCOMPARE(numberOf(frame), 3);
    QCOMPARE(frame.missed, 1U);
}

void tst_Frames::a_frame_with_an_invalid_count_is_missed()
{
    const auto memory = memoryWithZones(1);
    FrameReader reader(memory->zones[0]);
    for (const quint32 count : {8193U, 0xffffffffU}) {
        writeFrame(*memory, 0, frameOf(1, 1), now);
        ZoneRing &ring = memory->zones[0];
        ring.slotOf(ring.newest.read()).pointCount.write(count);
        Frame frame;
        QVERIFY(!reader.take(frame));
    }
    writeFrame(*memory, 0, frameOf(2, 1), now);
    Frame frame;
    QVERIFY(reader.take(frame));
    QCOMPARE(frame.missed, 2U);
}

void tst_Frames::a_corrupt_newest_number_yields_no_frame_and_then_the_next_data()
{
    QTest::addColumn<quint64>("newest");
    QTest::addRow("backwards") << quint64(2);
    QTest::addRow("none") << quint64(0);
    QTest::addRow("far ahead") << (quint64(1) << 40);
    QTest::addRow("the highest") << std::numeric_limits<quint64>::max();
}

void tst_Frames::a_corrupt_newest_number_yields_no_frame_and_then_the_next()
{
    QFETCH(quint64, newest);
    const auto memory = memoryWithZones(1);
    for (int number = 1; number <= 5; ++number)
        writeFrame(*memory, 0, frameOf(number, 1), now);
    FrameReader reader(memory->zones[0]);
    memory->zones[0].newest.write(newest);
    Frame frame;
    QVERIFY(!reader.take(frame));
    writeFrame(*memory, 0, frameOf(6, 1), now);
    writeFrame(*memory, 0, frameOf(7, 1), now);
    while (reader.take(frame)) { }
    QCOMPARE(numberOf(frame), 7);
}

void tst_Frames::frame_numbers_may_wrap_around()
{
    const auto memory = memoryWithZones(1);
    memory->zones[0].newest.write(std::numeric_limits<quint64>::max() - 1);
    FrameReader reader(memory->zones[0]);
    Frame frame;
    for (int number = 1; number <= 4; ++number) {
        writeFrame(*memory, 0, frameOf(number, 1), now);
        // No frame has number 0, which marks a frame being written.
        QVERIFY(reader.take(frame));
        QCOMPARE(numberOf(frame), number);
        QCOMPARE(frame.missed, 0U);
    }
}

void tst_Frames::frames_out_of_range_are_refused()
{
    const auto memory = memoryWithZones(2);
    const auto before = std::make_unique<SharedMemory>(*memory);
    QVERIFY(!writeFrame(*memory, -1, frameOf(1, 1), now));
    QVERIFY(!writeFrame(*memory, 2, frameOf(1, 1), now));
    QVERIFY(!writeFrame(*memory, 0, frameOf(1, ldbMaxPoints + 1), now));
    memory->header.zoneCount.write(1'000'000);
    QVERIFY(!writeFrame(*memory, 999'999, frameOf(1, 1), now));
    memory->header.zoneCount.write(2);
    QCOMPARE(std::memcmp(memory.get(), before.get(), sizeof(SharedMemory)), 0);
}

void tst_Frames::a_frame_being_read_is_not_overwritten()
{
    const auto memory = memoryWithZones(1);
    ZoneRing &ring = memory->zones[0];
    for (int number = 1; number <= 16; ++number)
        writeFrame(*memory, 0, frameOf(number, 1), now);
    ring.reading.write(3);
    for (int number = 17; number <= 60; ++number)
        QVERIFY(writeFrame(*memory, 0, frameOf(number, 1), now));
    QCOMPARE(ring.slotOf(3).number.read(), 3U);
    QCOMPARE(ring.slotOf(3).points[0].color, 3);
}

void tst_Frames::a_reader_that_died_while_reading_costs_no_frame()
{
    const auto memory = memoryWithZones(1);
    FrameReader reader(memory->zones[0]);
    memory->zones[0].reading.write(3);
    Frame frame;
    for (int number = 1; number <= 100; ++number) {
        QVERIFY(writeFrame(*memory, 0, frameOf(number, 1), now));
        QVERIFY(reader.take(frame));
        QCOMPARE(numberOf(frame), number);
        QCOMPARE(frame.missed, 0U);
        memory->zones[0].reading.write(3);
    }
}

void tst_Frames::a_new_host_starts_with_no_frame_being_read()
{
    const auto memory = memoryWithZones(8);
    for (ZoneRing &ring : memory->zones)
        ring.reading.write(5);
    openHost(*memory, {.build = 1700, .zoneCount = 8, .ready = true}, now);
    for (const ZoneRing &ring : memory->zones)
        QCOMPARE(ring.reading.read(), 0U);
}

void tst_Frames::a_torn_frame_is_never_taken()
{
    constexpr int frames = 20'000;
    const auto memory = memoryWithZones(1);
    FrameReader reader(memory->zones[0]);
    std::jthread writer([&memory] {
        for (int number = 1; number <= frames; ++number)
            writeFrame(*memory, 0, frameOf(number, std::size_t(number % 50 + 1)), number);
    });
    Frame frame;
    quint64 seen = 0;
    for (int last = 0; last < frames;) {
        if (!reader.take(frame))
            continue;
        const int number = numberOf(frame);
        seen += 1 + frame.missed;
        QCOMPARE(quint64(number), seen);
        QVERIFY(number > last);
        QCOMPARE(frame.sentAt, qint64(number));
        QCOMPARE(frame.points.size(), std::size_t(number % 50 + 1));
        for (const LdbPoint &point : frame.points) {
            if (point.color != number || point.x != float(number) || point.y != float(-number))
                QFAIL("The points are from two frames.");
        }
        last = number;
    }
}

void tst_Frames::a_reader_that_never_rests_costs_no_frame()
{
    const auto memory = memoryWithZones(1);
    const std::jthread reading([&memory](const std::stop_token &end) {
        FrameReader reader(memory->zones[0]);
        Frame frame;
        while (!end.stop_requested())
            reader.take(frame);
    });
    const std::vector<LdbPoint> points = frameOf(1, 1);
    int written = 0;
    for (int number = 1; number <= 2'000'000; ++number)
        written += writeFrame(*memory, 0, points, now) ? 1 : 0;
    QCOMPARE(written, 2'000'000);
}

QTEST_GUILESS_MAIN(tst_Frames)

#include "tst_frames.moc"
