#include "match.h"
#include "matchfixture.h"

#include <QTest>

namespace {

void addHitColumns()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<qint32>("speed");
    QTest::addColumn<qint32>("paddleY");
    QTest::addColumn<qint32>("y");
    QTest::addColumn<float>("vx");
    QTest::addColumn<float>("vy");
    QTest::addColumn<qint32>("yAfter");
    QTest::addColumn<float>("vxAfter");
    QTest::addColumn<float>("vyAfter");
}

/// One hit on either side. `vx` is the velocity toward the paddle and `vxAfter` the one away from
/// it. The expected velocities were calculated independently of this program, with every operation
/// rounded to single precision.
void addHits(const char *name, qint32 speed, qint32 paddleY, qint32 y, float vx, float vy,
    qint32 yAfter, float vxAfter, float vyAfter)
{
    for (const int side : {0, 1}) {
        const auto toward = static_cast<float>(directionOf(side));
        QTest::addRow("%s, %s", name, sideNames.at(size_t(side)))
            << side << speed << paddleY << y << toward * vx << vy << yAfter << -toward * vxAfter
            << vyAfter;
    }
}

void checkHit()
{
    QFETCH(int, side);
    QFETCH(qint32, speed);
    QFETCH(qint32, paddleY);
    QFETCH(qint32, y);
    QFETCH(float, vx);
    QFETCH(float, vy);
    QFETCH(qint32, yAfter);
    QFETCH(float, vxAfter);
    QFETCH(float, vyAfter);
    Match match = inPlay({directionOf(side) * 31199, y}, vx, vy);
    match.ballSpeed = speed;
    paddleOf(match, side).y = paddleY;
    QVERIFY(!match.moveBall());
    QCOMPARE(match.ballPos, (Point{directionOf(side) * 31200, yAfter}));
    COMPARE_BITS(match.ballVx, vxAfter);
    COMPARE_BITS(match.ballVy, vyAfter);
}

} // namespace

class tst_Hits : public QObject
{
    Q_OBJECT

private slots:
    void a_hit_rescales_the_velocity_in_two_stages_data();
    void a_hit_rescales_the_velocity_in_two_stages();
    void a_hit_leaves_a_quarter_of_the_speed_across_data();
    void a_hit_leaves_a_quarter_of_the_speed_across();
    void a_corner_turns_the_ball_before_the_paddle_does_data();
    void a_corner_turns_the_ball_before_the_paddle_does();
};

// clang-format off
void tst_Hits::a_hit_rescales_the_velocity_in_two_stages_data()
{
    addHitColumns();
    addHits("in the centre", 20, 0, 0, 106.0F, 0.0F, 0, 106.0F, 0.0F);
    addHits("49 above adds nothing", 20, 0, 49, 106.0F, 0.0F, 49, 106.0F, 0.0F);
    addHits("49 below adds nothing", 20, 0, -49, 106.0F, 0.0F, -49, 106.0F, 0.0F);
    addHits("50 above adds 1", 20, 0, 50, 106.0F, 0.0F, 50, 0x1.a7fb2cp+6F, 0x1p+0F);
    addHits("50 below takes 1", 20, 0, -50, 106.0F, 0.0F, -50, 0x1.a7fb2cp+6F, -0x1p+0F);
    addHits("99 above adds 1", 20, 0, 99, 106.0F, 0.0F, 99, 0x1.a7fb2cp+6F, 0x1p+0F);
    addHits("100 above adds 2", 20, 0, 100, 106.0F, 0.0F, 100, 0x1.a7ecaep+6F, 0x1p+1F);
    addHits("2500 above", 20, 0, 2500, 106.0F, 0.0F, 2500, 0x1.7f7aap+6F, 0x1.88238ap+5F);
    addHits("2500 below", 20, 0, -2500, 106.0F, 0.0F, -2500, 0x1.7f7aap+6F, -0x1.88238ap+5F);
    addHits("4999 above adds 99", 20, 0, 4999, 106.0F, 0.0F, 4999, 0x1.35dec6p+6F, 0x1.4deb6ep+6F);
    addHits("5000 above adds 100", 20, 0, 5000, 106.0F, 0.0F, 5000, 0x1.346a38p+6F, 0x1.4fc77ap+6F);
    addHits("5000 below takes 100", 20, 0, -5000, 106.0F, 0.0F, -5000, 0x1.346a38p+6F, -0x1.4fc77ap+6F);
    addHits("100 cancels a fall of 100", 20, 0, 5100, 106.0F, -100.0F, 5000, 106.0F, 0.0F);
    addHits("moving up", 20, -300, 879, 90.5F, 55.25F, 934, 0x1.3efbbap+6F, 0x1.2ae07ap+6F);
    addHits("moving down", 20, 300, 1889, 90.5F, -55.25F, 1833, 0x1.9866ecp+6F, -0x1.9729dep+4F);
    addHits("at speed 10", 10, 0, -746, 0x1.426666p+5F, -0x1.fb3334p+4F, -777, 0x1.15027p+5F, -0x1.54974ep+5F);
    addHits("at speed 30", 30, 12000, 15150, 0x1.2c3334p+7F, 0x1.e73334p+5F, 15210, 0x1.e8e1dep+6F, 0x1.c691cp+6F);
    addHits("at speed 1", 1, 0, 448, 5.0F, 2.5F, 450, 0x1.0e7eecp+1F, 0x1.4d9d32p+2F);
    addHits("faster than the setting", 10, 0, 4900, 159.0F, 100.0F, 5000, 0x1.07db8ap+5F, 0x1.a2597ap+5F);
    addHits("slower than the setting", 30, 0, -4980, 53.0F, -20.0F, -5000, 0x1.00f432p+6F, -0x1.185b48p+7F);
}

void tst_Hits::a_hit_leaves_a_quarter_of_the_speed_across_data()
{
    addHitColumns();
    // At speed 20 a quarter is 26.5, but only values below 26 are raised to it.
    addHits("far below", 20, 0, 4880, 26.0F, 120.0F, 5000, 26.5F, 0x1.a752dep+6F);
    addHits("almost straight up", 20, 0, -300, 20.0F, 300.0F, 0, 26.5F, 0x1.a7e208p+6F);
    addHits("25.93", 20, 0, -102, 25.75F, 102.0F, 0, 26.5F, 0x1.9aea16p+6F);
    addHits("26 is left", 20, 0, -60, 0x1.e5c88ap+3F, 60.0F, 0, 26.0F, 0x1.850b2ap+6F);
    addHits("26.09 is left", 20, 0, -102, 0x1.9e6666p+4F, 102.0F, 0, 0x1.a167a2p+4F, 0x1.9ac702p+6F);
    addHits("26.65 is left", 20, 0, -102, 26.5F, 102.0F, 0, 0x1.aa7834p+4F, 0x1.9a399p+6F);
    addHits("at speed 30", 30, 0, -4800, 11.0F, -200.0F, -5000, 39.75F, -0x1.3df0a6p+7F);
    addHits("39 is left at speed 30", 30, 0, -60, 0x1.e5c88cp+3F, 60.0F, 0, 39.0F, 0x1.0aa004p+7F);
    addHits("at speed 1", 1, 0, 450, 1.5F, 50.0F, 500, 0x1.533334p+0F, 0x1.5332fep+2F);
    addHits("at speed 2", 2, 0, -9, 2.0F, 9.0F, 0, 0x1.2654cep+1F, 0x1.48a49ap+3F);
    addHits("at speed 3", 3, 0, -15, 3.0F, 15.0F, 0, 0x1.8f22b6p+1F, 0x1.f22664p+3F);
}

void tst_Hits::a_corner_turns_the_ball_before_the_paddle_does_data()
{
    addHitColumns();
    // 4251 off adds 85; 100 upward before the turn is 100 downward after it.
    addHits("top", 20, 27000, 31151, 106.0F, 100.0F, 31251, 0x1.a3d142p+6F, -0x1.dfe7dcp+3F);
    addHits("bottom", 20, -27000, -31151, 106.0F, -100.0F, -31251, 0x1.a3d142p+6F, 0x1.dfe7dcp+3F);
}
// clang-format on

void tst_Hits::a_hit_rescales_the_velocity_in_two_stages()
{
    checkHit();
}

void tst_Hits::a_hit_leaves_a_quarter_of_the_speed_across()
{
    checkHit();
}

void tst_Hits::a_corner_turns_the_ball_before_the_paddle_does()
{
    checkHit();
}

QTEST_GUILESS_MAIN(tst_Hits)

#include "tst_hits.moc"
