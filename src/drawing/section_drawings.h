#pragma once

#include "profile.h"

#include <span>
#include <string>

// The two drawings of a road: a profile with what names it.

namespace drawing {

/// Adds the title, the scales and the exaggeration above the ground.
[[nodiscard]] ProfileDrawing drawLongSection(std::span<const GroundPlace> ground, const ProfileStyle& style);

/// Adds the centre line where the section reaches it, and its chainage as title; `note` stands behind it.
[[nodiscard]] ProfileDrawing drawCrossSection(double chainage, std::span<const GroundPlace> ground,
                                              ProfileStyle style, const std::string& note = {});

} // namespace drawing
