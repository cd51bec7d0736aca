#include "interruption.h"
#include "match.h"
#include "matchfixture.h"

#include <QTest>

namespace {

struct Standing
{
    qint32 phase;
    qint32 left;
    qint32 right;
    bool pending;

    bool operator==(const Standing &) const = default;
};

Standing standingOf(const Match &match)
{
    return {match.servePhase, match.leftScore, match.rightScore, match.pointPending};
}

QByteArray told(const Standing &standing)
{
    return QStringLiteral("phase %1, %2-%3%4")
        .arg(standing.phase)
        .arg(standing.left)
        .arg(standing.right)
        .arg(standing.pending ? QStringLiteral(", pending") : QString())
        .toUtf8();
}

/// A match whose ball the left paddle misses at the next step.
Match beforeMiss(qint32 rightScore)
{
    Match match = inPlay({-31190, 9000}, -106.0F, 0.0F);
    match.leftScore = 4;
    match.rightScore = rightScore;
    return match;
}

} // namespace

/// The ball's step and a start press come from different threads: wherever one interrupts the
/// other, the result is as if one had followed the other.
class tst_Simultaneous : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void a_miss_and_a_start_press_happen_one_after_the_other_data();
    void a_miss_and_a_start_press_happen_one_after_the_other();
};

void tst_Simultaneous::initTestCase()
{
#ifdef __SANITIZE_THREAD__
    QSKIP("An interruption within the thread sanitizer would wait for the sanitizer's own locks");
#endif
}

void tst_Simultaneous::a_miss_and_a_start_press_happen_one_after_the_other_data()
{
    QTest::addColumn<qint32>("rightScore");
    QTest::addColumn<int>("presser");
    QTest::addColumn<bool>("pressWithinMiss");
    for (const qint32 score : {3, 9}) {
        for (const int presser : {0, 1}) {
            for (const bool pressWithinMiss : {true, false}) {
                QTest::addRow("%d to %d, %s presses, %s", score, score + 1,
                    sideNames.at(size_t(presser)),
                    pressWithinMiss ? "within the miss" : "the miss within the press")
                    << score << presser << pressWithinMiss;
            }
        }
    }
}

void tst_Simultaneous::a_miss_and_a_start_press_happen_one_after_the_other()
{
    QFETCH(qint32, rightScore);
    QFETCH(int, presser);
    QFETCH(bool, pressWithinMiss);
    Match match;
    const auto miss = [&match] { match.moveBall(); };
    const auto press = [&match, presser] { match.requestStart(presser); };

    match = beforeMiss(rightScore);
    press();
    miss();
    const Standing pressFirst = standingOf(match);
    QCOMPARE(int(match.rightScore), rightScore + 1);
    match = beforeMiss(rightScore);
    miss();
    press();
    const Standing missFirst = standingOf(match);

    bool interrupted = true;
    for (int instructions = 1; interrupted; ++instructions) {
        match = beforeMiss(rightScore);
        interrupted = pressWithinMiss ? runInterrupted(miss, instructions, press)
                                      : runInterrupted(press, instructions, miss);
        const Standing standing = standingOf(match);
        if (interrupted)
            QVERIFY2(standing == pressFirst || standing == missFirst, told(standing));
        QVERIFY(instructions < 100'000);
    }
}

QTEST_GUILESS_MAIN(tst_Simultaneous)

#include "tst_simultaneous.moc"
