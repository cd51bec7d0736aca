#pragma once

#include <QByteArray>
#include <QByteArrayList>

// Recorded matches: the inputs of a match and its state after every tick. The format is described
// in tests/matches/README.md.

/// The result of recording a match.
struct Recording
{
    QByteArray text; ///< the inputs, and the state after every tick
    QByteArray error; ///< the malformed line and the reason; empty on success
};

/// Plays the inputs of a script, or of a recorded match, whose states are ignored, and records them
/// with the resulting states. One at a time per process, because it installs the fake host.
Recording recordMatch(const QByteArray &script);

/// The first difference of two recordings: the tick, the line and both texts. Empty if equal.
QByteArray firstDifference(const QByteArray &expected, const QByteArray &actual);
