#include "framedoctor.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

namespace {

/// Fewer intervals than these say nothing about how even they are.
constexpr int enoughIntervals = 20;
/// The longest interval of even frames, in parts of the median.
constexpr double evenness = 1.5;
constexpr SharedTime outputPatience = 1'000'000'000;
/// Seconds that mirrors take for a wide jump, about.
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
        tr("Scan rate exceeded: %1 points a second are asked for, %2 are drawn. The picture is "
           "drawn %3 times a second instead of %4.")
            .arg(number(points * frames), number(conditions.pointRate),
                number(double(conditions.pointRate) / points), number(frames)),
        tr("Assumes that each point is drawn once. The real host may resample.")});
}

void lookAtPace(const FrameHistory &history, const Conditions &conditions, QList<Finding> &findings)
{
    const Intervals intervals = history.litIntervals(conditions.now);
    if (intervals.count < enoughIntervals
        || double(intervals.longest) <= evenness * double(intervals.median))
        return;
    findings.append({Cause::framesUneven,
        tr("Frames uneven: %1 to %2 between them, %3 as a rule.")
            .arg(milliseconds(seconds(intervals.shortest)),
                milliseconds(seconds(intervals.longest)), milliseconds(seconds(intervals.median))),
        tr("Assumes that the game's clock tells when they were sent. The real host may buffer.")});
}

void lookAtStand(
    const FrameHistory &history, const Conditions &conditions, QList<Finding> &findings)
{
    const FrameFacts &facts = history.facts();
    const double stand = double(facts.longestStand) / conditions.pointRate;
    if (!facts.standsForEver && stand <= conditions.longestStand * (1 + 1e-9))
        return;
    const QString time = facts.standsForEver ? tr("as long as the frame is shown")
                                             : tr("for %1").arg(milliseconds(stand));
    findings.append({Cause::beamStands,
        tr("A lit beam stands still %1; the limit is %2.")
            .arg(time, milliseconds(conditions.longestStand)),
        tr("Assumes %1 points a second and that the host draws points as they are.")
            .arg(number(conditions.pointRate))});
}

void lookAtField(const FrameHistory &history, QList<Finding> &findings)
{
    if (const int outside = history.facts().outside) {
        findings.append({Cause::outsideField,
            outside == 1 ? tr("1 point is outside the field.")
                         : tr("%1 points are outside the field.").arg(number(outside)),
            tr("Assumes that the scanner stops at the edge. The real host may clip or refuse.")});
    }
}

void lookAtEnd(
    int zone, const FrameHistory &history, const Conditions &conditions, QList<Finding> &findings)
{
    const SharedTime silent = conditions.now - history.lastSent().value_or(conditions.now);
    if (!conditions.outputOn || history.facts().isEmpty() || silent < FrameHistory::shortestPause)
        return;
    findings.append({Cause::zoneLeftLit,
        tr("Zone %1 is left lit: frames stopped %2 s ago, and the last one was not empty.")
            .arg(number(zone), number(seconds(silent), 1)),
        tr("Assumes that the projector repeats its last frame until it is told otherwise.")});
}

void lookAtJumps(
    const FrameHistory &history, const Conditions &conditions, QList<Finding> &findings)
{
    const FrameFacts &facts = history.facts();
    const double shortest = double(facts.shortestJump) / conditions.pointRate;
    if (facts.jumps == 0 || shortest >= jumpSeconds)
        return;
    findings.append({Cause::shortJumps,
        tr("Jumps have %1 blanked points or more, %2 ms at this rate. Mirrors take about %3 ms for "
           "a wide one, so that its tail shows.")
            .arg(number(facts.shortestJump), number(shortest * 1e3, 2),
                number(jumpSeconds * 1e3, 1)),
        tr("The game's frames are so by design. The real host may add points.")});
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
        tr("Output is enabled, but nothing has been sent for %1 s.")
            .arg(number(seconds(conditions.now - silentSince), 0)),
        {}}};
}
