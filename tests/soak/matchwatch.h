#pragma once

#include "ldb.h"
#include "match.h"

#include <QList>
#include <QString>

// The rules that hold at every moment of every match. Each function returns the rule that is
// broken, with the numbers that show it, or an empty text.

/// The rules of a match between two ticks. Game thread.
QString brokenRule(const Match &match);

/// While a player has won, only the winner display is drawn; at any other time it never is. The
/// frame must have been composed from `match` as it is.
QString brokenFrame(const Match &match, const QList<LdbPoint> &points);

/// Whether a frame shows the winner display.
bool showsWinner(const QList<LdbPoint> &points);
