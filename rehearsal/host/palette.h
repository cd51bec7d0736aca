#pragma once

#include <QColor>

// The colours of the window around the light: dark and calm, so that the light stands out.

namespace palette {

inline constexpr QColor window(0x0c, 0x0e, 0x11);
inline constexpr QColor frame(0x23, 0x28, 0x2e);
inline constexpr QColor quiet(0x7d, 0x87, 0x94);
inline constexpr QColor text(0xd3, 0xd9, 0xe0);
inline constexpr QColor good(0x4c, 0xc3, 0x8a);
inline constexpr QColor waiting(0xe0, 0xa9, 0x3b);
inline constexpr QColor lit(0xff, 0x5c, 0x4d);

} // namespace palette
