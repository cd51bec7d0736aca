#pragma once

#include "bytestream.h"
#include "ldb.h"

#include <vector>

// The points of a frame in few bytes, and every bit of them: what equals the frame before is
// counted, and of other points only what differs from the point before is kept.

/// Appends the points, told apart from `previous`, the points of the frame before.
void writePoints(
    ByteWriter &to, const std::vector<LdbPoint> &points, const std::vector<LdbPoint> &previous);

/// Takes points into `points`, which holds those of the frame before. The reader fails, and the
/// points are any, if they are not as writePoints makes them.
void readPoints(ByteReader &from, std::vector<LdbPoint> &points);
