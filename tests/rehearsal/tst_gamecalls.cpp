#include "allocations.h"
#include "gamecalls.h"

#include <QTest>

#include <array>
#include <atomic>
#include <limits>
#include <memory>
#include <thread>

namespace {

constexpr SharedTime now = 5'000'000'000;

/// Zeroed memory and its reader.
struct Calls
{
    std::unique_ptr<SharedMemory> memory = std::make_unique<SharedMemory>();
    CallReader reader{memory->calls};

    void note(SharedTime at) { noteCall(*memory, {GameCall::EnableOutput, at, 42}); }
    /// The time of the next call; -1 if there is none.
    SharedTime take()
    {
        const auto call = reader.take();
        return call ? call->at : -1;
    }
};

} // namespace

class tst_GameCalls : public QObject
{
    Q_OBJECT

private slots:
    void calls_are_taken_once_and_in_order();
    void a_reader_starts_after_the_newest_call();
    void overwritten_calls_are_skipped();
    void an_incomplete_call_is_waited_for_once();
    void an_unknown_call_is_skipped();
    void a_corrupt_count_ends_after_one_round_data();
    void a_corrupt_count_ends_after_one_round();
    void calls_from_two_threads_have_distinct_numbers();
    void a_call_is_stored_without_allocating();
};

void tst_GameCalls::calls_are_taken_once_and_in_order()
{
    Calls calls;
    const std::array kinds = {GameCall::OpenSession, GameCall::EnableOutput,
        GameCall::DisableOutput, GameCall::CloseSession};
    for (std::size_t i = 0; i < kinds.size(); ++i)
        noteCall(*calls.memory, {kinds[i], now + SharedTime(i), 4711});
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        const auto call = calls.reader.take();
        QVERIFY(call);
        QCOMPARE(call->call, kinds[i]);
        QCOMPARE(call->at, now + SharedTime(i));
        QCOMPARE(call->process, 4711U);
    }
    QVERIFY(!calls.reader.take());
}

void tst_GameCalls::a_reader_starts_after_the_newest_call()
{
    Calls calls;
    calls.note(1);
    CallReader late(calls.memory->calls);
    QVERIFY(!late.take());
    calls.note(2);
    QCOMPARE(late.take()->at, SharedTime(2));
}

void tst_GameCalls::overwritten_calls_are_skipped()
{
    Calls calls;
    for (int i = 1; i <= 70; ++i)
        calls.note(i);
    for (int i = 7; i <= 70; ++i)
        QCOMPARE(calls.take(), SharedTime(i));
    QCOMPARE(calls.take(), SharedTime(-1));
}

void tst_GameCalls::an_incomplete_call_is_waited_for_once()
{
    Calls calls;
    calls.note(1);
    calls.note(2);
    CallSlot &slot = calls.memory->calls.slotOf(1);
    slot.number.write(0);
    QCOMPARE(calls.take(), SharedTime(-1));
    slot.number.write(1);
    QCOMPARE(calls.take(), SharedTime(1));
    QCOMPARE(calls.take(), SharedTime(2));

    calls.note(3);
    calls.note(4);
    calls.memory->calls.slotOf(3).number.write(0);
    QCOMPARE(calls.take(), SharedTime(-1));
    QCOMPARE(calls.take(), SharedTime(4));
}

void tst_GameCalls::an_unknown_call_is_skipped()
{
    Calls calls;
    for (const std::uint32_t unknown : {0U, 5U, std::numeric_limits<std::uint32_t>::max()})
        noteCall(*calls.memory, {GameCall(unknown), 1, 42});
    calls.note(2);
    QCOMPARE(calls.take(), SharedTime(2));
}

void tst_GameCalls::a_corrupt_count_ends_after_one_round_data()
{
    QTest::addColumn<quint64>("newest");
    QTest::addRow("far ahead") << (quint64(1) << 63U);
    QTest::addRow("the highest") << std::numeric_limits<quint64>::max();
    QTest::addRow("backwards") << quint64(3);
}

void tst_GameCalls::a_corrupt_count_ends_after_one_round()
{
    QFETCH(quint64, newest);
    Calls calls;
    for (int i = 1; i <= 10; ++i)
        calls.note(i);
    while (calls.take() > 0) { }
    calls.memory->calls.newest.write(newest);
    // Each number in the ring is waited for once.
    for (quint64 i = 0; i <= rememberedCalls; ++i)
        calls.take();
    noteCall(*calls.memory, {GameCall::CloseSession, now, 42});
    QCOMPARE(calls.take(), now);
}

void tst_GameCalls::calls_from_two_threads_have_distinct_numbers()
{
    constexpr int callsPerThread = 200'000;
    Calls calls;
    std::atomic<int> begun = 0;
    const auto write = [&] {
        for (++begun; begun < 2;)
            std::this_thread::yield();
        for (int i = 1; i <= callsPerThread; ++i)
            calls.note(i);
    };
    {
        const std::jthread other(write);
        write();
    }
    QCOMPARE(calls.memory->calls.newest.read(), quint64(2 * callsPerThread));
    int taken = 0;
    while (calls.reader.take())
        ++taken;
    QCOMPARE(taken, int(rememberedCalls));
}

void tst_GameCalls::a_call_is_stored_without_allocating()
{
    Calls calls;
    const auto before = allocations();
    calls.note(1);
    QCOMPARE(allocations(), before);
}

QTEST_GUILESS_MAIN(tst_GameCalls)

#include "tst_gamecalls.moc"
