#pragma once

#include <QIcon>

enum class Glyph { Record, Play, Pause, Forward, Back };

/// A drawn icon for a button on the dark window, where the desktop's own cannot be made out.
QIcon glyphIcon(Glyph glyph, const QColor &color);
/// One for a switch.
QIcon switchIcon(Glyph off, const QColor &offColor, Glyph on, const QColor &onColor);
