#pragma once

// Measures that all windows share, in device-independent pixels.

namespace shell {

// The main window and its panes.
inline constexpr int margin = 6;       ///< between a window's edge and what stands in it
inline constexpr int gap = 3;          ///< between controls of one group
inline constexpr int groupGap = 9;     ///< between groups
inline constexpr int labelPadding = 4; ///< beside a text in a bar

// A panel over the grid.
inline constexpr int panelMargin = 16;
inline constexpr int panelTop = 12;  ///< above its title
inline constexpr int fieldGap = 10;  ///< between a label, its field and the unit, and between title and body
inline constexpr int lineGap = 7;    ///< between one line of fields and the next
inline constexpr int choiceGap = 14; ///< between options side by side
inline constexpr int frameGap = 12;  ///< between framed groups side by side
inline constexpr int inFrameField = 8; ///< the field gap within a framed group, where lines stand closer
inline constexpr int inFrameLine = 6;  ///< the line gap there

// A small window.
inline constexpr int windowMargin = 20;
inline constexpr int windowGap = 10;

inline constexpr int buttonWidth = 96; ///< of the buttons that end a panel or a small window, at least

/// 15 twips are one device-independent pixel.
constexpr int pixels(int twips) {
    return (twips + 7) / 15;
}

} // namespace shell
