// The game plays by itself, with scripted devices on both sides: as fast as its ticks can be
// called, and in real time with a host that is restarted again and again. The rules hold at every
// tick, and nothing grows.
//
// SOAK_POINTS and SOAK_SECONDS lengthen the two; see tests/soak/run.

#include "debuglog.h"
#include "fastmatch.h"
#include "matchwatch.h"
#include "realshow.h"
#include "resources.h"

#include <QElapsedTimer>
#include <QScopeGuard>
#include <QTest>

#include <algorithm>
#include <functional>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// Points are scored before the first measurement, so that every buffer has its size.
constexpr int pointsToWarmUp = 300;
constexpr int pointsPerReport = 100'000;

int number(const char *variable, int otherwise)
{
    bool given = false;
    const int value = qEnvironmentVariableIntValue(variable, &given);
    return given ? value : otherwise;
}

/// Discards the program's log, which has two lines for every point.
void discard(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    if (type != QtDebugMsg)
        fprintf(stderr, "%s\n", qUtf8Printable(message));
}

} // namespace

class tst_Soak : public QObject
{
    Q_OBJECT

private slots:
    void a_broken_rule_is_noticed_data();
    void a_broken_rule_is_noticed();
    void a_long_match_keeps_the_rules_and_grows_nothing();
    void a_show_with_host_restarts_keeps_the_rules_and_grows_nothing();
};

void tst_Soak::a_broken_rule_is_noticed_data()
{
    QTest::addColumn<std::function<void(Match &)>>("change");
    const auto row = [](const char *name, const std::function<void(Match &)> &change) {
        QTest::addRow("%s", name) << change;
    };
    row("a score below 0", [](Match &match) { match.leftScore = -1; });
    row("a score above 10", [](Match &match) { match.rightScore = 11; });
    row("two winners", [](Match &match) { match.leftScore = match.rightScore = 10; });
    row("a ball outside", [](Match &match) { match.ballPos.x = -31360; });
    row("a ball above", [](Match &match) { match.ballPos.y = 31519; });
    row("a paddle outside", [](Match &match) { match.leftPaddle.y = 27001; });
    row("a paddle that left its line", [](Match &match) { match.rightPaddle.x = 31999; });
    row("a velocity that is NaN",
        [](Match &match) { match.ballVy = std::numeric_limits<float>::quiet_NaN(); });
    row("an unknown serve", [](Match &match) { match.servePhase = 3; });
    row("a winner who does not wait", [](Match &match) {
        match.leftScore = 10;
        match.pointPending = false;
    });
}

void tst_Soak::a_broken_rule_is_noticed()
{
    QFETCH(std::function<void(Match &)>, change);
    Match match;
    QCOMPARE(brokenRule(match), QString());
    change(match);
    QVERIFY(!brokenRule(match).isEmpty());
}

void tst_Soak::a_long_match_keeps_the_rules_and_grows_nothing()
{
    const int points = number("SOAK_POINTS", 2000);
    const auto previous = qInstallMessageHandler(discard);
    const auto restore = qScopeGuard([previous] { qInstallMessageHandler(previous); });
    FastMatch match;
    const auto playUntil = [&match](int points) {
        QString broken;
        while (broken.isEmpty() && match.points < points)
            broken = match.tick();
        return broken;
    };
    QElapsedTimer time;
    time.start();
    QCOMPARE(playUntil(pointsToWarmUp), QString());
    const Resources before = Resources::now();
    for (int played = 0; played < points; played += pointsPerReport) {
        QCOMPARE(playUntil(pointsToWarmUp + std::min(points, played + pointsPerReport)), QString());
        fprintf(stderr, "%lld points: %s\n", match.points, qPrintable(Resources::now().text()));
    }
    const Resources after = Resources::now();
    qInstallMessageHandler(previous);
    qInfo("%lld points, %lld winners, %lld ticks in %lld s", match.points, match.winners,
        match.ticks, time.elapsed() / 1000);
    qInfo("before: %s\nafter:  %s", qPrintable(before.text()), qPrintable(after.text()));
    QVERIFY(match.winners >= points / 25);
    QVERIFY2(
        after.heap - before.heap < 4096, qPrintable(QString::number(after.heap - before.heap)));
    QVERIFY(after.resident - before.resident < 1 << 20);
    QCOMPARE(after.threads, before.threads);
    QCOMPARE(after.handles, before.handles);
}

void tst_Soak::a_show_with_host_restarts_keeps_the_rules_and_grows_nothing()
{
    const int seconds = number("SOAK_SECONDS", 6);
    const DebugLog log;
    RealShow show;
    show.start();
    // A restart takes two of the program's host checks, one second apart.
    const qint64 restartAfter = std::clamp(seconds * 1000 / 40, 1000, 15'000);
    QList<Resources> samples;
    int restarts = 0;
    QElapsedTimer time;
    QElapsedTimer sinceRestart;
    time.start();
    sinceRestart.start();
    while (time.elapsed() < seconds * 1000LL || restarts < 2) {
        show.play();
        QTest::qWait(20);
        QCOMPARE(show.broken(), QString());
        if (sinceRestart.elapsed() < restartAfter)
            continue;
        show.restartHost();
        if (QTest::currentTestFailed())
            return;
        ++restarts;
        samples.append(Resources::now());
        sinceRestart.start();
    }
    show.end();
    QVERIFY(show.isDark());
    qInfo("%d restarts, %d winners, %d frames three ticks after the last one", restarts,
        show.winners, int(show.comparedFrames));
    qInfo("first: %s\nlast:  %s", qPrintable(samples.first().text()),
        qPrintable(samples.last().text()));
    QVERIFY(show.comparedFrames > 0);
    for (const Resources &sample : samples) {
        QCOMPARE(sample.threads, samples.first().threads);
        QCOMPARE(sample.handles, samples.first().handles);
    }
    QVERIFY(samples.last().heap - samples.first().heap < 256 * 1024L);
}

QTEST_MAIN(tst_Soak)
#include "tst_soak.moc"
