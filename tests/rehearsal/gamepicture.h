#pragma once

#include "ldb.h"

#include <vector>

/// A picture like the game's after `seconds` of play: two paddles, the borders, the ball and the
/// scores, in strokes with blanked travel between them.
std::vector<LdbPoint> gamePicture(double seconds);
