#pragma once

#include "ldb.h"

#include <span>

/// What a frame asks of the scanner, counted. A projector repeats its frame, so that the last point
/// is followed by the first.
struct FrameFacts
{
    int points = 0;
    int litPoints = 0;
    /// Points with a coordinate outside the field or without a finite one.
    int outside = 0;
    /// Ways in the dark from one lit point to the next.
    int jumps = 0;
    int blankedOnJumps = 0; ///< points of all jumps together
    int shortestJump = 0; ///< blanked points of the jump that has the fewest; 0 without jumps
    /// Field units between two lit points that follow each other.
    double longestLitStep = 0;
    /// How many lit points in a row are at one place, at most.
    int longestStand = 0;
    /// The beam is lit and at one place as long as the frame is repeated.
    bool standsForEver = false;

    bool isEmpty() const { return litPoints == 0; }
    /// 0 ... 1.
    double litShare() const { return points > 0 ? double(litPoints) / points : 0; }
    /// 0 without jumps.
    double blankedPerJump() const { return jumps > 0 ? double(blankedOnJumps) / jumps : 0; }
};

FrameFacts factsOf(std::span<const LdbPoint> points);
