#pragma once

#include "sheets.h"

namespace drawing {

inline constexpr double stripHeight = 14; ///< millimetres

/// What a sheet has room for above its title strip and within its margins.
[[nodiscard]] Box roomOn(const Paper& paper);

/// The edge of the sheet and the strip at its foot.
void drawStrip(DisplayList& list, const Paper& paper, const StripTexts& texts, const std::string& title,
               const std::string& scale, int sheet, int of);

} // namespace drawing
