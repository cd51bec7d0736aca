#pragma once

/// The parts of a colour number, from the highest down. The host's own library does not say which
/// order it takes.
enum class ColorOrder {
    RedGreenBlue,
    BlueGreenRed,
};
