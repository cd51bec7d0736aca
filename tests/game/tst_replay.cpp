#include "matchrecording.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTest>

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList recordedMatches()
{
    return QDir(QStringLiteral(":/matches")).entryList();
}

} // namespace

class tst_Replay : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void a_recorded_match_replays_to_the_bit_data();
    void a_recorded_match_replays_to_the_bit();
    void a_recording_does_not_depend_on_earlier_play();
    void a_changed_digit_is_reported_with_its_tick();
    void a_script_becomes_a_recording();
    void a_malformed_line_is_reported_data();
    void a_malformed_line_is_reported();
};

void tst_Replay::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    QVERIFY(recordedMatches().size() >= 3);
}

void tst_Replay::a_recorded_match_replays_to_the_bit_data()
{
    QTest::addColumn<QString>("path");
    for (const QString &name : recordedMatches())
        QTest::newRow(qPrintable(name)) << QStringLiteral(":/matches/") + name;
}

void tst_Replay::a_recorded_match_replays_to_the_bit()
{
    QFETCH(QString, path);
    const QByteArray recorded = contents(path);
    QVERIFY(recorded.count("\n=") > 100);
    const Recording replayed = recordMatch(recorded);
    QCOMPARE(replayed.error, QByteArray());
    const QByteArray difference = firstDifference(recorded, replayed.text);
    QVERIFY2(difference.isEmpty(), difference.constData());
}

void tst_Replay::a_recording_does_not_depend_on_earlier_play()
{
    const QByteArray script = "show\ntick 10\n";
    const QByteArray first = recordMatch(script).text;
    for (int ticks = 1; ticks <= 3; ++ticks) {
        recordMatch("show\nstart left\nspeed 30\ntick " + QByteArray::number(ticks) + '\n');
        QCOMPARE(recordMatch(script).text, first);
    }
}

void tst_Replay::a_changed_digit_is_reported_with_its_tick()
{
    const QByteArray recorded = recordMatch("show\ntick 5\n").text;
    QByteArray changed = recorded;
    const auto tick3 = changed.indexOf("=3 ");
    QVERIFY(tick3 > 0);
    const auto digit = changed.indexOf('\n', tick3) - 1;
    changed[digit] = changed[digit] == '0' ? '1' : '0';
    const QByteArray difference = firstDifference(changed, recorded);
    QVERIFY2(difference.startsWith("tick 3, line 5: "), difference.constData());
    QVERIFY(firstDifference(recorded, recorded).isEmpty());
    QVERIFY(!firstDifference(recorded, recorded + "=6\n").isEmpty());
    QVERIFY(!firstDifference(recorded, recorded.chopped(1)).isEmpty());
}

void tst_Replay::a_script_becomes_a_recording()
{
    const QByteArray script = "# one serve\n"
                              "\n"
                              "speed 10\n"
                              "show\n"
                              "step right -64\n"
                              "start left\n"
                              "tick 2\n"
                              "start left\n"
                              "tick 1\n"
                              "hide\n"
                              "tick 1\n";
    const Recording recording = recordMatch(script);
    QCOMPARE(recording.error, QByteArray());
    QByteArrayList lines = recording.text.split('\n');
    QCOMPARE(lines[7], "=1 b-31200,0 l0 r-64 x42540000 y00000000 p0 s0-0 w0");
    QCOMPARE(lines[8], "=2 r-128");
    QCOMPARE(lines[9], "start left");
    QVERIFY(lines[11].startsWith("=3 b-31147,0 r-192 p2 f175:"));
    QCOMPARE(lines[14], "=4 f0:cbf29ce484222325");
    // A recording is a script too.
    QCOMPARE(recordMatch(recording.text).text, recording.text);
}

void tst_Replay::a_malformed_line_is_reported_data()
{
    QTest::addColumn<QByteArray>("line");
    for (const char *line : {"speed", "speed fast", "speed 20 30", "tick 0", "tick -1", "start",
             "start middle", "step left", "step up 3", "step left far", "jump", "show me"})
        QTest::newRow(line) << QByteArray(line);
}

void tst_Replay::a_malformed_line_is_reported()
{
    QFETCH(QByteArray, line);
    QCOMPARE(
        recordMatch("show\n" + line + "\ntick 1\n").error, "line 2: cannot read \"" + line + '"');
}

QTEST_GUILESS_MAIN(tst_Replay)

#include "tst_replay.moc"
