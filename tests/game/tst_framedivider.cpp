#include "gamefixture.h"

#include <QTest>

/// The frame divider is shared by the process, so its initial count can be tested only in a
/// separate process with a single test function that runs every tick.
class tst_FrameDivider : public QObject
{
    Q_OBJECT

private slots:
    void every_third_tick_of_the_process_sends_a_frame_whichever_game_it_is();
};

void tst_FrameDivider::every_third_tick_of_the_process_sends_a_frame_whichever_game_it_is()
{
    int ticks = 0;
    for (const int ticksOfGame : {4, 1, 5, 2}) {
        Game game;
        for (int tick = 0; tick < ticksOfGame; ++tick) {
            game.tick();
            QCOMPARE(game.host.takeCalls().size(), ++ticks % 3 == 0 ? 1 : 0);
        }
        game.host.takeCalls();
    }
}

QTEST_GUILESS_MAIN(tst_FrameDivider)

#include "tst_framedivider.moc"
