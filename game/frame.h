#pragma once

class BadBey;
struct Match;

/// Draws a match into the binding's point list: the field with the ball or the scores, or the
/// winner display. Game thread.
void composeFrame(const Match &match, BadBey &bey);
