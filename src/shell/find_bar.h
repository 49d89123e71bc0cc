#pragma once

#include "window_part.h"

namespace shell {

/// Find and Go to chainage: their items in the menu "Edit" and a bar at the foot of the window for each,
/// which Esc closes. What is not found leaves the cursor where it is and is said in the status bar.
std::unique_ptr<WindowPart> makeFindBar(frmGrl& window);

} // namespace shell
