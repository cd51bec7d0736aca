#include "framedoctor.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

namespace {

/// Minimum number of intervals for a statement about their jitter.
constexpr int enoughIntervals = 20;
/// Longest interval of even frames, relative to the median.
constexpr double evenness = 1.5;
constexpr SharedTime outputPatience = 1'000'000'000;
/// Approximate time that mirrors take for a wide jump, in seconds.
constexpr double jumpSeconds = 0.3e-3;

QString tr(const char *text)
{
    return QCoreApplication::translate("FrameDoctor", text);
}

QString number(double value, int decimals = 0)
{
    return QLocale(QLocale::English).toString(value, 'f', decimals);
}

QString milliseconds(double seconds)
{
    return number(seconds * 1e3, 1) + QStringLiteral(" ms");
}

double seconds(SharedTime time)
{
    return double(time) * 1e-9;
}

void lookAtRate(const FrameHistory &history, const Conditions &conditions, QList<Finding> &findings)
{
    const Intervals intervals = history.litIntervals(conditions.now);
    if (intervals.count < enoughIntervals || intervals.mean <= 0)
        return;
    const int points = history.facts().points;
    const double frames = 1e9 / intervals.mean;
    if (points * frames <= conditions.pointRate * (1 + 1e-9))
        return;
    findings.append({Cause::scanRateExceeded,
        tr("Scan rate exceeded: the frames need %1 points per second, the scanner draws %2. The "
           "picture is drawn %3 times a second instead of %4.")
            .arg(number(points * frames), number(conditions.pointRate),
                number(double(conditions.pointRate) / points), number(frames)),
        tr("Assumes that every point is drawn once. The real host may resample.")});
}

void lookAtPace(const FrameHistory &history, const Conditions &conditions, QList<Finding> &findings)
{
    const Intervals intervals = history.litIntervals(conditions.now);
    if (intervals.count < enoughIntervals
        || double(intervals.longest) <= evenness * double(intervals.median))
        return;
    findings.append({Cause::framesUneven,
        tr("Uneven frames: intervals from %1 to %2, median %3.")
            .arg(milliseconds(seconds(intervals.shortest)),
                milliseconds(seconds(intervals.longest)), milliseconds(seconds(intervals.median))),
        tr("Based on the times at which the game sent them. The real host may buffer.")});
}

void lookAtStand(
    const FrameHistory &history, const Conditions &conditions, QList<Finding> &findings)
{
    const FrameFacts &facts = history.facts();
    const double stand = double(facts.longestStand) / conditions.pointRate;
    if (!facts.standsForEver && stand <= conditions.longestStand * (1 + 1e-9))
        return;
    const QString time = facts.standsForEver ? tr("for as long as the frame is shown")
                                             : tr("for %1").arg(milliseconds(stand));
    findings.append({Cause::beamStands,
        tr("A lit beam stands still %1; the limit is %2.")
            .arg(time, milliseconds(conditions.longestStand)),
        tr("Assumes %1 points per second and a host that draws the points unchanged.")
            .arg(number(conditions.pointRate))});
}

void lookAtField(const FrameHistory &history, QList<Finding> &findings)
{
    if (const int outside = history.facts().outside) {
        findings.append({Cause::outsideField,
            outside == 1 ? tr("1 point is outside the field.")
                         : tr("%1 points are outside the field.").arg(number(outside)),
            tr("Assumes that the scanner stops at the edge. The real host may clip or reject.")});
    }
}

void lookAtEnd(
    int zone, const FrameHistory &history, const Conditions &conditions, QList<Finding> &findings)
{
    const SharedTime silent = conditions.now - history.lastSent().value_or(conditions.now);
    if (!conditions.outputOn || history.facts().isEmpty() || silent < FrameHistory::shortestPause)
        return;
    findings.append({Cause::zoneLeftLit,
        tr("Zone %1 is left lit: frames stopped %2 s ago and the last one was not empty.")
            .arg(number(zone), number(seconds(silent), 1)),
        tr("Assumes that the projector repeats its last frame until it gets another.")});
}

void lookAtJumps(
    const FrameHistory &history, const Conditions &conditions, QList<Finding> &findings)
{
    const FrameFacts &facts = history.facts();
    const double shortest = double(facts.shortestJump) / conditions.pointRate;
    if (facts.jumps == 0 || shortest >= jumpSeconds)
        return;
    findings.append({Cause::shortJumps,
        tr("Jumps have at least %1 blanked points, %2 ms at this rate. Mirrors take about %3 ms "
           "for "
           "a wide jump, so its tail is visible.")
            .arg(number(facts.shortestJump), number(shortest * 1e3, 2),
                number(jumpSeconds * 1e3, 1)),
        tr("The game draws them so by design. The real host may add points.")});
}

} // namespace

QList<Finding> examine(int zone, const FrameHistory &history, const Conditions &conditions)
{
    QList<Finding> findings;
    lookAtEnd(zone, history, conditions, findings);
    lookAtRate(history, conditions, findings);
    lookAtPace(history, conditions, findings);
    lookAtStand(history, conditions, findings);
    lookAtField(history, findings);
    lookAtJumps(history, conditions, findings);
    return findings;
}

QList<Finding> examineOutput(std::optional<SharedTime> lastSent, const Conditions &conditions)
{
    const SharedTime silentSince =
        std::max(conditions.outputSince, lastSent.value_or(conditions.outputSince));
    if (!conditions.outputOn || conditions.now - silentSince < outputPatience)
        return {};
    return {{Cause::outputWithoutFrames,
        tr("Output is enabled, but no frame was sent for %1 s.")
            .arg(number(seconds(conditions.now - silentSince), 0)),
        {}}};
}
