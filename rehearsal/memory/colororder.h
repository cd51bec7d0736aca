#pragma once

/// The components of a packed colour, most significant first. The real host's library does not
/// document which order it expects.
enum class ColorOrder {
    RedGreenBlue,
    BlueGreenRed,
};
