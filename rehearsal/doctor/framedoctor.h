#pragma once

#include "framehistory.h"

#include <QList>
#include <QString>

/// What is looked for in the frames of a zone.
enum class Cause {
    scanRateExceeded,
    framesUneven,
    beamStands,
    outsideField,
    outputWithoutFrames,
    zoneLeftLit,
    shortJumps, ///< a fact, not a fault: the game's frames are so by design
};

struct Finding
{
    Cause cause;
    QString text; ///< the cause in one or two sentences, with figures
    QString assumption; ///< that it rests on; empty for none

    bool isFact() const { return cause == Cause::shortJumps; }
};

/// Under which conditions frames are judged.
struct Conditions
{
    SharedTime now = 0;
    bool outputOn = false;
    SharedTime outputSince = 0; ///< when it was switched last
    int pointRate = 30000; ///< points per second of the scanner
    double longestStand = 0.001; ///< seconds for which a lit beam may stand still
};

/// Names what is worth knowing about the frames of a zone, which people count from 1.
QList<Finding> examine(int zone, const FrameHistory &history, const Conditions &conditions);

/// The same about all zones together: when any of them was sent a frame last.
QList<Finding> examineOutput(std::optional<SharedTime> lastSent, const Conditions &conditions);
