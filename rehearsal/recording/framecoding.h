#pragma once

#include "bytestream.h"
#include "ldb.h"

#include <vector>

// Compact, lossless coding of a frame's points: runs equal to the previous frame are stored as
// counts, other points as differences from the point before.

/// Appends the points, coded relative to `previous`, the points of the frame before.
void writePoints(
    ByteWriter &to, const std::vector<LdbPoint> &points, const std::vector<LdbPoint> &previous);

/// Reads points into `points`, which must hold those of the frame before. On invalid data the
/// reader fails and `points` is unspecified.
void readPoints(ByteReader &from, std::vector<LdbPoint> &points);
