#include "showplayer.h"
#include "shows.h"

using namespace std::chrono_literals;

namespace {

/// A player with a show, and its signals: the positions of points, 0 for empty frames, and 1000 and
/// -1000 for output switched on and off.
struct Stage
{
    ShowPlayer player;
    std::vector<int> given;
    int received = 0;

    explicit Stage(const Show &show)
    {
        QObject::connect(
            &player, &ShowPlayer::frameReceived, &player, [this](int zone, const Frame &frame) {
                if (zone == 0)
                    given.push_back(frame.points.empty() ? 0 : int(frame.points.front().x));
            });
        QObject::connect(&player, &ShowPlayer::outputSwitched, &player,
            [this](bool on) { given.push_back(on ? 1000 : -1000); });
        QObject::connect(&player, &ShowPlayer::received, &player, [this] { ++received; });
        QFile file(folder.filePath(QStringLiteral("show.rec")));
        if (!file.open(QIODevice::WriteOnly) || file.write(recorded(show)) < 0)
            qFatal("%s", qPrintable(file.errorString()));
        file.close();
        if (!player.open(file.fileName()))
            qFatal("%s", qPrintable(player.problem()));
    }
    std::vector<int> take() { return std::exchange(given, {}); }

private:
    QTemporaryDir folder;
};

Show threeFrames()
{
    return {frameAt(0, pointAt(1)), eventAt(5, Event::OutputEnabled), frameAt(10, pointAt(2)),
        frameAt(20, pointAt(3)), eventAt(25, Event::OutputDisabled)};
}

using Given = std::vector<int>;

} // namespace

class tst_Player : public QObject
{
    Q_OBJECT

private slots:
    void a_recording_opens_with_its_first_moment();
    void every_frame_played_is_emitted();
    void a_step_back_and_a_seek_emit_the_current_frames();
    void it_plays_by_itself_to_the_end();
    void played_at_its_end_it_restarts();
    void without_a_recording_nothing_happens();
    void a_damaged_recording_is_reported_and_played_as_far_as_possible();
};

void tst_Player::a_recording_opens_with_its_first_moment()
{
    Stage stage(threeFrames());
    QCOMPARE(stage.take(), Given{1});
    QVERIFY(stage.player.playback()->isPaused());
}

void tst_Player::every_frame_played_is_emitted()
{
    Stage stage(threeFrames());
    stage.take();
    stage.player.play();
    stage.player.advance(20ms);
    const Given all = stage.take();
    QCOMPARE(std::ranges::count(all, 2), 1);
    QCOMPARE(std::ranges::count(all, 3), 1);
    QCOMPARE(std::ranges::count(all, 1000), 1);
    stage.player.advance(5ms);
    QCOMPARE(stage.take(), Given{-1000});
}

void tst_Player::a_step_back_and_a_seek_emit_the_current_frames()
{
    Stage stage(threeFrames());
    stage.take();
    stage.player.seek(25 * showMs);
    QCOMPARE(stage.take(), Given{3});
    stage.player.step(-1);
    QCOMPARE(stage.take(), (Given{2, 1000}));
    stage.player.step(1);
    QCOMPARE(stage.take(), Given{3});
    stage.player.seek(0);
    QCOMPARE(stage.take(), (Given{1, -1000}));
}

void tst_Player::it_plays_by_itself_to_the_end()
{
    Stage stage(threeFrames());
    stage.take();
    stage.player.setSpeed(0.5);
    stage.player.play();
    QTRY_VERIFY(stage.player.playback()->atEnd());
    QCOMPARE(stage.take(), (Given{1000, 2, 3, -1000}));
    QVERIFY(stage.player.playback()->isPaused());
}

void tst_Player::played_at_its_end_it_restarts()
{
    Stage stage(threeFrames());
    stage.player.seek(25 * showMs);
    stage.take();
    stage.player.play();
    QCOMPARE(stage.take(), Given{1});
    stage.player.pause();
    const int received = stage.received;
    QTest::qWait(50);
    QCOMPARE(stage.received, received);
}

void tst_Player::without_a_recording_nothing_happens()
{
    ShowPlayer player;
    player.play();
    player.pause();
    player.step(1);
    player.seek(5);
    player.advance(1s);
    player.setSpeed(2);
    QVERIFY(!player.playback());
}

void tst_Player::a_damaged_recording_is_reported_and_played_as_far_as_possible()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("show.rec")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(recorded(threeFrames()).chopped(20));
    file.close();
    ShowPlayer player;
    QVERIFY(!player.open(file.fileName()));
    QVERIFY2(player.problem().contains(QStringLiteral("Damaged at byte ")),
        qPrintable(player.problem()));
    QVERIFY(player.playback()->end() > 0);
}

QTEST_GUILESS_MAIN(tst_Player)

#include "tst_showplayer.moc"
