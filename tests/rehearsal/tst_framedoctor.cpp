#include "framedoctor.h"
#include "lightpoints.h"

#include <QTest>

#include <algorithm>
#include <limits>

namespace {

constexpr SharedTime ms = 1'000'000;
constexpr SharedTime start = 3'600'000 * ms;

/// Identical frames at even intervals up to `start`, and optionally one more.
FrameHistory evenFrames(const std::vector<LdbPoint> &points, SharedTime interval, int count = 60)
{
    FrameHistory history;
    for (int i = count - 1; i >= 0; --i)
        history.add(start - i * interval, factsOf(points), 0);
    return history;
}

Conditions at(SharedTime now, bool outputOn = true)
{
    Conditions conditions;
    conditions.now = now;
    conditions.outputOn = outputOn;
    return conditions;
}

const Finding *find(const QList<Finding> &findings, Cause cause)
{
    const auto found = std::find_if(findings.begin(), findings.end(),
        [cause](const Finding &finding) { return finding.cause == cause; });
    return found == findings.end() ? nullptr : &*found;
}

bool names(const FrameHistory &history, Cause cause, const Conditions &conditions)
{
    return find(examine(1, history, conditions), cause) != nullptr;
}

std::vector<LdbPoint> lineOf(int points)
{
    return strokeOf({-20000, 0}, {20000, 0}, points - 3);
}

} // namespace

class tst_FrameDoctor : public QObject
{
    Q_OBJECT

private slots:
    void a_frame_is_counted();
    void jumps_are_counted_around_the_repeat();
    void an_empty_frame_counts_nothing();
    void the_longest_lit_step_ignores_blanked_points();
    void a_stand_is_the_longest_run_of_lit_points_at_one_place();
    void frames_of_the_last_second_are_counted();
    void the_rate_excludes_pauses();
    void missed_frames_count_for_the_rate_of_the_game();
    void without_frames_the_rate_is_zero();
    void a_time_that_goes_back_counts_as_the_previous_one();
    void intervals_are_those_between_lit_frames();
    void an_exceeded_scan_rate_is_reported_with_its_effect();
    void a_scan_rate_at_the_limit_is_not_reported();
    void missed_frames_count_for_the_required_scan_rate();
    void uneven_frames_are_reported_with_their_spread();
    void a_little_jitter_is_not_reported();
    void a_missed_frame_does_not_count_as_an_uneven_one();
    void a_beam_that_stands_beyond_the_limit_is_reported();
    void a_beam_that_never_moves_is_reported_whatever_the_limit();
    void points_outside_the_field_are_reported();
    void points_on_the_edge_of_the_field_are_not_reported();
    void output_without_frames_for_a_second_is_reported();
    void a_zone_left_lit_is_reported();
    void a_zone_left_dark_is_not_reported();
    void short_jumps_are_a_fact_not_a_fault();
    void the_frames_of_a_rally_cause_only_facts();
};

void tst_FrameDoctor::a_frame_is_counted()
{
    const FrameFacts facts =
        factsOf(strokeOf({0, 0}, {3000, 4000}, 1) + strokeOf({9000, 0}, {9000, 600}, 2));
    QCOMPARE(facts.points, 9);
    QCOMPARE(facts.litPoints, 5);
    QCOMPARE(facts.outside, 0);
    QCOMPARE(facts.longestLitStep, 5000.0);
    QCOMPARE(facts.longestStand, 1);
    QVERIFY(!facts.standsForEver && !facts.isEmpty());
    QCOMPARE(facts.litShare(), 5.0 / 9);
}

void tst_FrameDoctor::jumps_are_counted_around_the_repeat()
{
    const std::vector<LdbPoint> three = {lit(0, 0, 1), lit(9, 0, 1), dark(9, 0), lit(0, 500, 1),
        lit(90, 500, 1), dark(1, 1), dark(1, 2), dark(1, 3), dark(0, 0)};
    const FrameFacts facts = factsOf(three);
    QCOMPARE(facts.jumps, 2);
    QCOMPARE(facts.blankedOnJumps, 5);
    QCOMPARE(facts.shortestJump, 1);
    QCOMPARE(facts.blankedPerJump(), 2.5);
    QCOMPARE(factsOf(strokeOf({0, 0}, {9, 0})).jumps, 1);
    QCOMPARE(factsOf(strokeOf({0, 0}, {9, 0})).shortestJump, 2);
    QCOMPARE(factsOf(litLine({0, 0}, {9, 0}, 3)).jumps, 0);
}

void tst_FrameDoctor::an_empty_frame_counts_nothing()
{
    QVERIFY(factsOf({}).isEmpty());
    QCOMPARE(factsOf({}).litShare(), 0.0);
    const std::vector<LdbPoint> blanked(5, dark(0, 0));
    QVERIFY(factsOf(blanked).isEmpty());
    QCOMPARE(factsOf(blanked).points, 5);
    QCOMPARE(factsOf(blanked).longestStand, 0);
}

void tst_FrameDoctor::the_longest_lit_step_ignores_blanked_points()
{
    const std::vector<LdbPoint> points = {lit(0, 0, 1), lit(100, 0, 1), dark(30000, 0),
        lit(30000, 0, 1), lit(30050, 0, 1), dark(0, 0)};
    QCOMPARE(factsOf(points).longestLitStep, 100.0);
    QCOMPARE(factsOf(litLine({0, 0}, {9000, 0}, 9)).longestLitStep, 9000.0); // back to the start
}

void tst_FrameDoctor::a_stand_is_the_longest_run_of_lit_points_at_one_place()
{
    std::vector<LdbPoint> points = strokeOf({0, 0}, {9000, 0}, 9);
    QCOMPARE(factsOf(points).longestStand, 1);
    points.insert(points.begin() + 5, 6, points[5]);
    QCOMPARE(factsOf(points).longestStand, 7);
    points.insert(points.begin() + 8, dark(4000, 0));
    QCOMPARE(factsOf(points).longestStand, 4);
}

void tst_FrameDoctor::frames_of_the_last_second_are_counted()
{
    const FrameHistory history = evenFrames(lineOf(175), 100 * ms, 30);
    QCOMPARE(history.frames(), 30U);
    QCOMPARE(history.facts().points, 175);
    QCOMPARE(history.framesInLastSecond(start), 10);
    QCOMPARE(history.framesInLastSecond(start + 500 * ms), 5);
    QCOMPARE(history.framesInLastSecond(start + 1000 * ms), 0);
}

void tst_FrameDoctor::the_rate_excludes_pauses()
{
    FrameHistory history;
    for (const SharedTime beginning : {SharedTime(0), 60'000 * ms}) {
        for (qint64 i = 0; i <= 100; ++i)
            history.add(start + beginning + i * 10 * ms, {}, 0);
    }
    QCOMPARE(history.framesPerSecond(), 100.0);
}

void tst_FrameDoctor::missed_frames_count_for_the_rate_of_the_game()
{
    FrameHistory history;
    history.add(start, {}, 0);
    history.add(start + 100 * ms, {}, 9);
    QCOMPARE(history.missed(), 9U);
    QCOMPARE(history.framesPerSecond(), 100.0);
}

void tst_FrameDoctor::without_frames_the_rate_is_zero()
{
    FrameHistory history;
    QCOMPARE(history.framesPerSecond(), 0.0);
    QVERIFY(!history.lastSent());
    history.add(start, {}, 0);
    QCOMPARE(history.framesPerSecond(), 0.0);
}

void tst_FrameDoctor::a_time_that_goes_back_counts_as_the_previous_one()
{
    FrameHistory history;
    history.add(start, {}, 0);
    history.add(std::numeric_limits<SharedTime>::min(), {}, 0);
    history.add(start - 5 * ms, {}, 0);
    QCOMPARE(*history.lastSent(), start);
    QCOMPARE(history.framesInLastSecond(start), 3);
}

void tst_FrameDoctor::intervals_are_those_between_lit_frames()
{
    FrameHistory history = evenFrames(lineOf(10), 9 * ms, 30);
    for (qint64 i = 1; i <= 30; ++i)
        history.add(start + i * 3 * ms, {}, 0); // hidden: an empty frame at every tick
    history.add(start + 99 * ms, factsOf(lineOf(10)), 0);
    const Intervals intervals = history.litIntervals(start + 99 * ms);
    QCOMPARE(intervals.count, 29);
    QCOMPARE(intervals.shortest, 9 * ms);
    QCOMPARE(intervals.longest, 9 * ms);
}

void tst_FrameDoctor::an_exceeded_scan_rate_is_reported_with_its_effect()
{
    const auto findings = examine(1, evenFrames(lineOf(688), 9 * ms), at(start));
    const Finding *finding = find(findings, Cause::scanRateExceeded);
    QVERIFY(finding);
    QVERIFY2(finding->text.contains("76,444"), qPrintable(finding->text));
    QVERIFY(finding->text.contains("44 times a second instead of 111"));
    QVERIFY(finding->assumption.contains("resample"));
    QVERIFY(!finding->isFact());
}

void tst_FrameDoctor::a_scan_rate_at_the_limit_is_not_reported()
{
    QVERIFY(!names(evenFrames(lineOf(300), 10 * ms), Cause::scanRateExceeded, at(start)));
    QVERIFY(names(evenFrames(lineOf(301), 10 * ms), Cause::scanRateExceeded, at(start)));
    Conditions faster = at(start);
    faster.pointRate = 30100;
    QVERIFY(!names(evenFrames(lineOf(301), 10 * ms), Cause::scanRateExceeded, faster));
}

void tst_FrameDoctor::missed_frames_count_for_the_required_scan_rate()
{
    // Frames every 10 ms with every other one missed, and pairs of intervals of 1 and 19 ms.
    FrameHistory history;
    SharedTime now = start;
    for (int i = 0; i < 30; ++i) {
        history.add(now += 1 * ms, factsOf(lineOf(299)), 0);
        history.add(now += 39 * ms, factsOf(lineOf(299)), 2);
    }
    QVERIFY(!names(history, Cause::scanRateExceeded, at(now)));
    history.add(now, factsOf(lineOf(311)), 0);
    QVERIFY(names(history, Cause::scanRateExceeded, at(now)));
}

void tst_FrameDoctor::uneven_frames_are_reported_with_their_spread()
{
    FrameHistory history = evenFrames(lineOf(100), 10 * ms);
    history.add(start + 16 * ms, factsOf(lineOf(100)), 0);
    const auto findings = examine(1, history, at(start + 16 * ms));
    const Finding *finding = find(findings, Cause::framesUneven);
    QVERIFY(finding);
    QVERIFY2(finding->text.contains("10.0 ms to 16.0 ms"), qPrintable(finding->text));
}

void tst_FrameDoctor::a_little_jitter_is_not_reported()
{
    FrameHistory history = evenFrames(lineOf(100), 10 * ms);
    history.add(start + 15 * ms, factsOf(lineOf(100)), 0);
    QVERIFY(!names(history, Cause::framesUneven, at(start + 15 * ms)));
}

void tst_FrameDoctor::a_missed_frame_does_not_count_as_an_uneven_one()
{
    FrameHistory history = evenFrames(lineOf(100), 10 * ms);
    history.add(start + 30 * ms, factsOf(lineOf(100)), 2);
    QVERIFY(!names(history, Cause::framesUneven, at(start + 30 * ms)));
}

void tst_FrameDoctor::a_beam_that_stands_beyond_the_limit_is_reported()
{
    const auto standing = [](int points) {
        std::vector<LdbPoint> frame = strokeOf({0, 0}, {20000, 0}, 40);
        frame.insert(frame.begin() + 10, std::size_t(points) - 1, frame[10]);
        return evenFrames(frame, 9 * ms);
    };
    Conditions conditions = at(start);
    conditions.longestStand = 0.001; // thirty points
    QVERIFY(!names(standing(30), Cause::beamStands, conditions));
    QVERIFY(names(standing(31), Cause::beamStands, conditions));
    conditions.longestStand = 0.002;
    QVERIFY(!names(standing(31), Cause::beamStands, conditions));
}

void tst_FrameDoctor::a_beam_that_never_moves_is_reported_whatever_the_limit()
{
    Conditions conditions = at(start);
    conditions.longestStand = 1;
    QVERIFY(names(evenFrames({lit(5, 5, 1)}, 9 * ms), Cause::beamStands, conditions));
    QVERIFY(
        !names(evenFrames({lit(5, 5, 1), lit(500, 5, 1)}, 9 * ms), Cause::beamStands, conditions));
}

void tst_FrameDoctor::points_outside_the_field_are_reported()
{
    for (const double beyond :
        {32769.0, -32769.0, 1e30, double(std::numeric_limits<float>::quiet_NaN())}) {
        QVERIFY(names(evenFrames(lineOf(20) + std::vector{lit(beyond, 0, 1)}, 9 * ms),
            Cause::outsideField, at(start)));
        QVERIFY(names(evenFrames(lineOf(20) + std::vector{dark(0, beyond)}, 9 * ms),
            Cause::outsideField, at(start)));
    }
}

void tst_FrameDoctor::points_on_the_edge_of_the_field_are_not_reported()
{
    const std::vector<LdbPoint> edge = {lit(-32768, 32768, 1), lit(32768, -32768, 1)};
    QVERIFY(!names(evenFrames(edge, 9 * ms), Cause::outsideField, at(start)));
}

void tst_FrameDoctor::output_without_frames_for_a_second_is_reported()
{
    Conditions conditions = at(start + 999 * ms);
    conditions.outputSince = start - 50 * ms;
    QVERIFY(examineOutput(start, conditions).isEmpty());
    conditions.now = start + 1000 * ms;
    QCOMPARE(examineOutput(start, conditions).size(), 1);
    conditions.outputSince = start + 1 * ms;
    QVERIFY(examineOutput(start, conditions).isEmpty());
    conditions.now = start + 1001 * ms;
    QCOMPARE(examineOutput(std::nullopt, conditions).size(), 1);
    conditions.outputOn = false;
    QVERIFY(examineOutput(std::nullopt, conditions).isEmpty());
}

void tst_FrameDoctor::a_zone_left_lit_is_reported()
{
    const FrameHistory history = evenFrames(lineOf(20), 9 * ms);
    QVERIFY(!names(history, Cause::zoneLeftLit, at(start + 499 * ms)));
    const auto findings = examine(3, history, at(start + 500 * ms));
    const Finding *finding = find(findings, Cause::zoneLeftLit);
    QVERIFY(finding);
    QVERIFY2(finding->text.startsWith("Zone 3 is left lit"), qPrintable(finding->text));
}

void tst_FrameDoctor::a_zone_left_dark_is_not_reported()
{
    QVERIFY(!names({}, Cause::zoneLeftLit, at(start)));
    FrameHistory history = evenFrames(lineOf(20), 9 * ms);
    QVERIFY(!names(history, Cause::zoneLeftLit, at(start + 5000 * ms, false)));
    history.add(start + 9 * ms, factsOf({}), 0);
    QVERIFY(!names(history, Cause::zoneLeftLit, at(start + 5000 * ms)));
}

void tst_FrameDoctor::short_jumps_are_a_fact_not_a_fault()
{
    const auto findings = examine(1, evenFrames(lineOf(20), 9 * ms), at(start));
    const Finding *finding = find(findings, Cause::shortJumps);
    QVERIFY(finding && finding->isFact());
    QVERIFY2(finding->text.contains("2 blanked points"), qPrintable(finding->text));
    const auto withLongJump = lineOf(20) + std::vector<LdbPoint>(7, dark(0, 0));
    QVERIFY(!names(evenFrames(withLongJump, 9 * ms), Cause::shortJumps, at(start)));
    const auto withShorterJump = lineOf(20) + std::vector<LdbPoint>(6, dark(0, 0));
    QVERIFY(names(evenFrames(withShorterJump, 9 * ms), Cause::shortJumps, at(start)));
}

void tst_FrameDoctor::the_frames_of_a_rally_cause_only_facts()
{
    const FrameHistory history = evenFrames(lineOf(175), 9 * ms);
    for (const Finding &finding : examine(1, history, at(start + 9 * ms)))
        QVERIFY2(finding.isFact(), qPrintable(finding.text));
}

QTEST_GUILESS_MAIN(tst_FrameDoctor)

#include "tst_framedoctor.moc"
