#pragma once

// Measures that all windows share, in device-independent pixels.

namespace shell {

inline constexpr int margin = 6;       ///< between a window's edge and what stands in it
inline constexpr int gap = 3;          ///< between controls of one group
inline constexpr int groupGap = 9;     ///< between groups
inline constexpr int panelMargin = 16; ///< inside a panel

/// 15 twips are one device-independent pixel.
constexpr int pixels(int twips) {
    return (twips + 7) / 15;
}

} // namespace shell
