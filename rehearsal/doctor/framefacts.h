#pragma once

#include "ldb.h"

#include <span>

/// Figures of a frame that matter to the scanner. The projector repeats the frame, so the last
/// point is followed by the first.
struct FrameFacts
{
    int points = 0;
    int litPoints = 0;
    /// Points with a coordinate that is outside the field or not finite.
    int outside = 0;
    /// Blanked moves from one lit point to the next.
    int jumps = 0;
    int blankedOnJumps = 0; ///< blanked points of all jumps together
    int shortestJump = 0; ///< blanked points of the shortest jump; 0 without jumps
    /// Longest distance between two consecutive lit points, in field units.
    double longestLitStep = 0;
    /// The most consecutive lit points at one position.
    int longestStand = 0;
    /// The beam stays lit at one position for as long as the frame is repeated.
    bool standsForEver = false;

    bool isEmpty() const { return litPoints == 0; }
    /// 0 ... 1.
    double litShare() const { return points > 0 ? double(litPoints) / points : 0; }
    /// 0 without jumps.
    double blankedPerJump() const { return jumps > 0 ? double(blankedOnJumps) / jumps : 0; }
};

FrameFacts factsOf(std::span<const LdbPoint> points);
