#pragma once

#include "framehistory.h"

#include <QList>
#include <QString>

/// The kinds of findings about the frames of a zone.
enum class Cause {
    scanRateExceeded,
    framesUneven,
    beamStands,
    outsideField,
    outputWithoutFrames,
    zoneLeftLit,
    shortJumps, ///< a fact, not a fault: the game draws them so by design
};

struct Finding
{
    Cause cause;
    QString text; ///< the cause in one or two sentences, with figures
    QString assumption; ///< that the finding depends on; may be empty

    bool isFact() const { return cause == Cause::shortJumps; }
};

/// The conditions under which frames are examined.
struct Conditions
{
    SharedTime now = 0;
    bool outputOn = false;
    SharedTime outputSince = 0; ///< when output was last switched
    int pointRate = 30000; ///< points per second of the scanner
    double longestStand = 0.001; ///< longest time a lit beam may stand still, in seconds
};

/// Findings about the frames of a zone. `zone` is the number shown to the operator, from 1.
QList<Finding> examine(int zone, const FrameHistory &history, const Conditions &conditions);

/// Findings about all zones together. `lastSent` is the time of the last frame to any zone.
QList<Finding> examineOutput(std::optional<SharedTime> lastSent, const Conditions &conditions);
