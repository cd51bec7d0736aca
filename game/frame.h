#pragma once

class BadBey;
struct Match;

/// Draws the picture of a match into the point list of the binding: the field with the ball or
/// the scores, or the winner display. Game thread.
void composeFrame(const Match &match, BadBey &bey);
