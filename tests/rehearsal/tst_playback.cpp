#include "playback.h"
#include "shows.h"

#include <cmath>
#include <limits>

using namespace std::chrono_literals;

namespace {

/// Frames at 0, 10, 20, 30 ms with positions 1 ... 4, one of another zone in between; output
/// enabled from 5 to 25 ms.
Show fourFrames()
{
    return {eventAt(0, Event::HostStarted), frameAt(0, pointAt(1)),
        eventAt(5, Event::OutputEnabled), frameAt(10, pointAt(2)), frameAt(15, pointAt(9), 1),
        frameAt(20, pointAt(3)), eventAt(25, Event::OutputDisabled), frameAt(30, pointAt(4))};
}

struct ShowPlayer
{
    explicit ShowPlayer(const Show &show = fourFrames())
    {
        if (!recording.read(recorded(show)))
            qFatal("%s", qPrintable(recording.problem()));
        playback.emplace(recording);
    }
    /// The position of the point that a zone shows; 0 if there is none.
    int shown(int zone = 0)
    {
        const Frame *frame = playback->frame(zone);
        return frame && !frame->points.empty() ? int(frame->points.front().x) : 0;
    }

    Recording recording;
    std::optional<Playback> playback;
};

} // namespace

class tst_Playback : public QObject
{
    Q_OBJECT

private slots:
    void it_begins_paused_with_the_first_frame();
    void it_advances_with_time();
    void it_stays_while_it_is_paused();
    void it_pauses_at_the_end();
    void speed_scales_its_advance_data();
    void speed_scales_its_advance();
    void speed_is_clamped();
    void a_step_goes_to_the_next_frame_of_any_zone();
    void a_step_back_goes_to_the_frame_before();
    void output_is_that_of_the_moment();
    void any_moment_can_be_sought();
    void its_time_never_runs_backwards();
    void an_empty_recording_has_nothing_to_play();
};

void tst_Playback::it_begins_paused_with_the_first_frame()
{
    ShowPlayer player;
    QVERIFY(player.playback->isPaused());
    QCOMPARE(player.shown(), 1);
    QCOMPARE(player.shown(1), 0);
    QCOMPARE(player.playback->position(), SharedTime(0));
    QCOMPARE(player.playback->end(), 30 * showMs);
}

void tst_Playback::it_advances_with_time()
{
    ShowPlayer player;
    player.playback->setPaused(false);
    player.playback->advance(9'999us);
    QCOMPARE(player.shown(), 1);
    player.playback->advance(1us);
    QCOMPARE(player.shown(), 2);
    player.playback->advance(10ms);
    QCOMPARE(player.shown(), 3);
    QCOMPARE(player.shown(1), 9);
    QCOMPARE(player.playback->position(), 20 * showMs);
}

void tst_Playback::it_stays_while_it_is_paused()
{
    ShowPlayer player;
    player.playback->advance(1h);
    QCOMPARE(player.playback->position(), SharedTime(0));
    QCOMPARE(player.shown(), 1);
}

void tst_Playback::it_pauses_at_the_end()
{
    ShowPlayer player;
    player.playback->setPaused(false);
    player.playback->advance(1h);
    QVERIFY(player.playback->atEnd());
    QVERIFY(player.playback->isPaused());
    QCOMPARE(player.playback->position(), player.playback->end());
    QCOMPARE(player.shown(), 4);
}

void tst_Playback::speed_scales_its_advance_data()
{
    QTest::addColumn<double>("speed");
    QTest::addColumn<int>("elapsedMs");
    QTest::addColumn<int>("shown");
    QTest::addRow("twice as fast") << 2.0 << 5 << 2;
    QTest::addRow("not yet") << 2.0 << 4 << 1;
    QTest::addRow("a tenth") << 0.1 << 100 << 2;
    QTest::addRow("a tenth, not yet") << 0.1 << 99 << 1;
}

void tst_Playback::speed_scales_its_advance()
{
    QFETCH(double, speed);
    QFETCH(int, elapsedMs);
    ShowPlayer player;
    player.playback->setSpeed(speed);
    player.playback->setPaused(false);
    player.playback->advance(elapsedMs * 1ms);
    QTEST(player.shown(), "shown");
}

void tst_Playback::speed_is_clamped()
{
    ShowPlayer player;
    const auto speedFor = [&player](double wanted) {
        player.playback->setSpeed(wanted);
        return player.playback->speed();
    };
    QCOMPARE(speedFor(0), Playback::slowest);
    QCOMPARE(speedFor(-5), Playback::slowest);
    QCOMPARE(speedFor(1e300), Playback::fastest);
    QCOMPARE(speedFor(std::numeric_limits<double>::quiet_NaN()), 1.0);
}

void tst_Playback::a_step_goes_to_the_next_frame_of_any_zone()
{
    ShowPlayer player;
    player.playback->setPaused(false);
    QVERIFY(player.playback->step(1));
    QVERIFY(player.playback->isPaused());
    QCOMPARE(player.shown(), 2);
    QCOMPARE(player.playback->position(), 10 * showMs);
    QVERIFY(player.playback->step(1));
    QCOMPARE(player.shown(1), 9);
    QCOMPARE(player.shown(), 2);
    QVERIFY(player.playback->step(1) && player.playback->step(1));
    QCOMPARE(player.shown(), 4);
    QVERIFY(!player.playback->step(1));
    QCOMPARE(player.shown(), 4);
}

void tst_Playback::a_step_back_goes_to_the_frame_before()
{
    ShowPlayer player;
    player.playback->seek(30 * showMs);
    for (const int shown : {3, 2, 2, 1}) {
        QVERIFY(player.playback->step(-1));
        QCOMPARE(player.shown(), shown);
    }
    QCOMPARE(player.shown(1), 0);
    QCOMPARE(player.playback->position(), SharedTime(0));
    QVERIFY(!player.playback->step(-1));
    QCOMPARE(player.shown(), 1);
}

void tst_Playback::output_is_that_of_the_moment()
{
    ShowPlayer player;
    const auto onAt = [&player](int at) {
        player.playback->seek(at * showMs);
        return player.playback->isOutputOn();
    };
    QVERIFY(!onAt(4));
    QVERIFY(onAt(5));
    QVERIFY(onAt(24));
    QVERIFY(!onAt(25));
    QVERIFY(onAt(10));
    QVERIFY(!onAt(0));
}

void tst_Playback::any_moment_can_be_sought()
{
    Show show;
    for (int i = 0; i < 1000; ++i)
        show.push_back(frameAt(i, pointAt(i + 1)));
    ShowPlayer player(show);
    for (const int at : {999, 0, 500, 499, 501, 130, 127, 128}) {
        player.playback->seek(at * showMs);
        QCOMPARE(player.shown(), at + 1);
    }
    player.playback->seek(-5);
    QCOMPARE(player.shown(), 1);
    player.playback->seek(std::numeric_limits<SharedTime>::max());
    QCOMPARE(player.shown(), 1000);
}

void tst_Playback::its_time_never_runs_backwards()
{
    ShowPlayer player({frameAt(10, pointAt(1)), frameAt(30, pointAt(2)), frameAt(20, pointAt(3))});
    player.playback->seek(29 * showMs);
    QCOMPARE(player.shown(), 1);
    player.playback->seek(30 * showMs);
    QCOMPARE(player.shown(), 3);
    QCOMPARE(player.playback->start(), 10 * showMs);
    QCOMPARE(player.playback->end(), 30 * showMs);
}

void tst_Playback::an_empty_recording_has_nothing_to_play()
{
    ShowPlayer player(Show{});
    QVERIFY(player.playback->atEnd());
    QCOMPARE(player.shown(), 0);
    QVERIFY(!player.playback->step(1));
    QVERIFY(!player.playback->step(-1));
    player.playback->setPaused(false);
    player.playback->advance(1s);
    QVERIFY(player.playback->isPaused());
    QVERIFY(!player.playback->isOutputOn());
}

QTEST_GUILESS_MAIN(tst_Playback)

#include "tst_playback.moc"
