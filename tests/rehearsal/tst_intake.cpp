#include "intake.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <limits>
#include <memory>

using namespace std::chrono_literals;

namespace {

/// A host's memory and the arrivals taken from it. No event loop runs while it waits.
struct Taken
{
    std::unique_ptr<SharedMemory> memory = std::make_unique<SharedMemory>();
    std::unique_ptr<Intake> intake;
    std::vector<Arrival> all;

    Taken()
    {
        openHost(*memory, {.build = 1700, .zoneCount = 8, .ready = true}, sharedNow());
        intake = std::make_unique<Intake>(*memory);
    }

    void handOver()
    {
        std::vector<Arrival> arrivals;
        intake->handOver(arrivals);
        std::ranges::move(arrivals, std::back_inserter(all));
    }
    /// Waits, with a generous limit, for this many arrivals; returns whether they came.
    bool waitFor(std::size_t count)
    {
        const QDeadlineTimer deadline(60s);
        while (all.size() < count && !deadline.hasExpired()) {
            QThread::yieldCurrentThread();
            handOver();
        }
        return all.size() == count;
    }
    void note(GameCall call, SharedTime at = sharedNow(), std::uint64_t process = 0) const
    {
        if (call == GameCall::EnableOutput || call == GameCall::DisableOutput)
            setOutput(*memory, call == GameCall::EnableOutput);
        noteCall(*memory, {call, at, process});
    }
    bool send(int number, int zone = 0, SharedTime at = sharedNow()) const
    {
        const LdbPoint point = {float(number), 0, 0, number, 0, 0, 1, 0};
        return writeFrame(*memory, zone, {&point, 1}, at);
    }
};

/// The kinds of the events among arrivals.
std::vector<int> kindsOf(const std::vector<Arrival> &arrivals)
{
    std::vector<int> kinds;
    for (const Arrival &arrival : arrivals) {
        if (arrival.zone < 0)
            kinds.push_back(arrival.event.kind);
    }
    return kinds;
}

} // namespace

class tst_Intake : public QObject
{
    Q_OBJECT

private slots:
    void frames_are_taken_while_the_window_hangs();
    void frames_of_every_zone_are_taken();
    void frames_and_events_come_in_the_order_of_their_times();
    void a_call_that_changes_nothing_is_no_event();
    void output_switched_without_a_call_is_noticed();
    void an_impossible_time_is_replaced_by_the_time_of_arrival();
    void a_killed_game_is_gone();
    void a_game_that_closed_its_session_is_not_gone();
    void a_process_that_never_existed_is_gone();
    void remaining_frames_are_taken_at_the_end();
    void frames_that_do_not_fit_are_counted_as_missed();
};

void tst_Intake::frames_are_taken_while_the_window_hangs()
{
    Taken taken;
    taken.intake->start();
    std::size_t sent = 0;
    for (int round = 0; round < 20; ++round) {
        for (std::size_t i = 0; i < framesPerZone; ++i)
            QVERIFY(taken.send(int(++sent)));
        QVERIFY(taken.waitFor(sent));
    }
    for (std::size_t i = 0; i < sent; ++i) {
        QCOMPARE(taken.all[i].frame.points.front().color, int(i) + 1);
        QCOMPARE(taken.all[i].frame.missed, 0U);
    }
}

void tst_Intake::frames_of_every_zone_are_taken()
{
    Taken taken;
    taken.intake->start();
    for (int zone = 0; zone < maxZones; ++zone)
        QVERIFY(taken.send(zone + 1, zone, sharedNow()));
    QVERIFY(taken.waitFor(maxZones));
    for (const Arrival &arrival : taken.all)
        QCOMPARE(arrival.frame.points.front().color, arrival.zone + 1);
}

void tst_Intake::frames_and_events_come_in_the_order_of_their_times()
{
    Taken taken;
    const SharedTime now = sharedNow();
    taken.send(2, 0, now - 80);
    taken.send(4, 0, now - 60);
    taken.send(1, 1, now - 90);
    taken.note(GameCall::EnableOutput, now - 85);
    taken.note(GameCall::DisableOutput, now - 70);
    taken.intake->start();
    taken.intake->stop();
    taken.handOver();
    QCOMPARE(taken.all.size(), 5U);
    QVERIFY(std::ranges::is_sorted(taken.all, {}, &Arrival::at));
    QCOMPARE(kindsOf(taken.all), (std::vector<int>{Event::OutputEnabled, Event::OutputDisabled}));
}

void tst_Intake::a_call_that_changes_nothing_is_no_event()
{
    Taken taken;
    taken.note(GameCall::DisableOutput);
    taken.note(GameCall::EnableOutput);
    taken.note(GameCall::EnableOutput);
    taken.intake->start();
    taken.intake->stop();
    taken.handOver();
    QCOMPARE(kindsOf(taken.all), std::vector<int>{Event::OutputEnabled});
}

void tst_Intake::output_switched_without_a_call_is_noticed()
{
    Taken taken;
    taken.intake->start();
    setOutput(*taken.memory, true);
    QVERIFY(taken.waitFor(1));
    QCOMPARE(kindsOf(taken.all), std::vector<int>{Event::OutputEnabled});
}

void tst_Intake::an_impossible_time_is_replaced_by_the_time_of_arrival()
{
    Taken taken;
    const SharedTime before = sharedNow();
    for (const SharedTime at : {std::numeric_limits<SharedTime>::min(), SharedTime(0),
             before + 3'600'000'000'000, std::numeric_limits<SharedTime>::max()}) {
        taken.send(1, 0, at);
        taken.note(GameCall::OpenSession, at, 0);
    }
    taken.intake->start();
    taken.intake->stop();
    taken.handOver();
    QVERIFY(taken.all.size() >= 8);
    for (const Arrival &arrival : taken.all)
        QVERIFY(arrival.at >= before && arrival.at <= sharedNow());
}

void tst_Intake::a_killed_game_is_gone()
{
    Taken taken;
    QProcess game;
    game.setProgram(QCoreApplication::applicationFilePath());
    game.setArguments({QStringLiteral("-as-a-game")});
    game.start();
    QVERIFY(game.waitForStarted());
    taken.intake->start();
    const auto process = std::uint64_t(game.processId());
    taken.note(GameCall::OpenSession, sharedNow(), process);
    QVERIFY(taken.waitFor(1));
    game.kill();
    // Noticed while the process is still a zombie: its exit code has not been read yet.
    QVERIFY(taken.waitFor(2));
    QCOMPARE(kindsOf(taken.all), (std::vector<int>{Event::SessionOpened, Event::GameGone}));
    QCOMPARE(taken.all.back().event.process, process);
    game.waitForFinished();
}

void tst_Intake::a_game_that_closed_its_session_is_not_gone()
{
    Taken taken;
    QProcess game;
    game.start(QCoreApplication::applicationFilePath(), {QStringLiteral("-as-a-game")});
    QVERIFY(game.waitForStarted());
    taken.intake->start();
    taken.note(GameCall::OpenSession, sharedNow(), std::uint64_t(game.processId()));
    QVERIFY(taken.waitFor(1));
    taken.note(GameCall::CloseSession, sharedNow(), std::uint64_t(game.processId()));
    game.kill();
    game.waitForFinished();
    taken.intake->stop();
    taken.handOver();
    QCOMPARE(kindsOf(taken.all), (std::vector<int>{Event::SessionOpened, Event::SessionClosed}));
}

void tst_Intake::a_process_that_never_existed_is_gone()
{
    Taken taken;
    taken.intake->start();
    QProcess game;
    game.start(QCoreApplication::applicationFilePath(), {QStringLiteral("-version")});
    QVERIFY(game.waitForStarted());
    const auto process = std::uint64_t(game.processId());
    QVERIFY(game.waitForFinished());
    taken.note(GameCall::OpenSession, sharedNow(), process);
    QVERIFY(taken.waitFor(2));
    QCOMPARE(kindsOf(taken.all), (std::vector<int>{Event::SessionOpened, Event::GameGone}));
}

void tst_Intake::remaining_frames_are_taken_at_the_end()
{
    Taken taken;
    taken.intake->start();
    QVERIFY(taken.send(1));
    taken.note(GameCall::EnableOutput);
    taken.intake->stop();
    taken.handOver();
    QCOMPARE(taken.all.size(), 2U);
}

void tst_Intake::frames_that_do_not_fit_are_counted_as_missed()
{
    Taken taken;
    taken.intake =
        std::make_unique<Intake>(*taken.memory, 3 * (sizeof(Arrival) + sizeof(LdbPoint)));
    const auto pass = [&taken] {
        taken.intake->start();
        taken.intake->stop();
        taken.handOver();
    };
    for (int number = 1; number <= 5; ++number)
        taken.send(number);
    pass();
    QCOMPARE(taken.all.size(), 3U);
    taken.send(6);
    pass();
    QCOMPARE(taken.all.size(), 4U);
    QCOMPARE(taken.all.back().frame.points.front().color, 6);
    QCOMPARE(taken.all.back().frame.missed, 2U);
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(QStringLiteral("-as-a-game")))
        return QCoreApplication::exec(); // until it is killed
    tst_Intake test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_intake.moc"
