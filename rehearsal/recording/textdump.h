#pragma once

#include "recording.h"

class QIODevice;

/// Writes a recording as text, one line for each frame and event:
///
///     started 0.000
///     opened 812.010 4242
///     output 1234.567 on
///     frame 1240.123 0 2 1
///     -32000 5000 0 FFFFFF 1
///     -32000 -5000 0 000000 3
///     closed 9000.000
///     gone 9000.000
///     ended 9500.000
///
/// "frame": the time at which the game sent it, the zone (from 0), the number of points, and the
/// number of frames missed before it; with `points`, one line per point follows: x, y, z, colour in
/// six hexadecimal digits, flags. "opened" gives the game's process id. Times are milliseconds
/// since the host started. False if it cannot be written.
bool dump(Recording &recording, bool points, QIODevice &to);
