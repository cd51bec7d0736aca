#pragma once

#include <QColor>

// The colours of the window around the light: dark and calm, so that the light stands out.

namespace palette {

inline constexpr QColor window(0x0c, 0x0e, 0x11);
inline constexpr QColor raised(0x16, 0x1a, 0x1f);
inline constexpr QColor frame(0x23, 0x28, 0x2e);
inline constexpr QColor quiet(0x8b, 0x95, 0xa2);
inline constexpr QColor text(0xd3, 0xd9, 0xe0);
inline constexpr QColor good(0x4c, 0xc3, 0x8a);
inline constexpr QColor waiting(0xe0, 0xa9, 0x3b);
inline constexpr QColor lit(0xff, 0x5c, 0x4d);
inline constexpr QColor travel(0x7a, 0x8c, 0xb0);
inline constexpr QColor chosen(0x3d, 0x5a, 0x80);

} // namespace palette
