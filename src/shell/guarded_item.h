#pragma once

#include "window_part.h"

namespace shell {

/// The switch "Guarded editing" in the menu "Edit", which stays from one start to the next.
std::unique_ptr<WindowPart> makeGuardedItem(frmGrl& window);

} // namespace shell
