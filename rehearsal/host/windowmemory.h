#pragma once

#include <QRect>

struct HostActions;
class QWidget;
class SidePanel;

// The window's place and what is switched on in it, kept in the file ".rehearsal" in the folder
// where the program was started, beside the game's settings.

/// Sets all as it was, as far as the file says it. Returns whether the window has a place.
bool recallWindow(QWidget &window, const HostActions &actions, SidePanel &panel);
void rememberWindow(const QWidget &window, const HostActions &actions, const SidePanel &panel);

/// Where the window is first shown on a screen: beside or below the upper left corner, where
/// rehearsals put the game's window, if there is room; else as far from it as can be.
QRect placeBesideGame(const QRect &screen, const QSize &smallest);
