#pragma once

#include "window_part.h"

namespace shell {

/// The switch "Guarded editing" in the menu "Edit", which stays from one start to the next; and how long the
/// status bar tells what a key cost.
std::unique_ptr<WindowPart> makeGuardedItem(frmGrl& window);

} // namespace shell
