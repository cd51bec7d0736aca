#pragma once

#include <QByteArray>
#include <QByteArrayList>

// Recorded matches: the inputs of a match and, after every tick, what became of it. The format is
// described in tests/matches/README.md.

/// The result of recording a match.
struct Recording
{
    QByteArray text; ///< the inputs, and after every tick the state
    QByteArray error; ///< why the inputs could not be read, with the line; empty when they could
};

/// Plays the inputs of a script, or of a recorded match, whose states are skipped, and writes them
/// down together with the states. One at a time: it becomes the host of this process.
Recording recordMatch(const QByteArray &script);

/// Where two recordings first differ: the tick, the line and both texts. Empty when they do not.
QByteArray firstDifference(const QByteArray &expected, const QByteArray &actual);
