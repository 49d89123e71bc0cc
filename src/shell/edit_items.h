#pragma once

#include "window_part.h"

namespace shell {

/// The menu "Edit", empty: what belongs into it comes from the parts behind.
std::unique_ptr<WindowPart> makeEditMenu(frmGrl& window);

/// Cut, Copy and Paste in it, and the menu that a right click on the grid brings: what "Edit" has, and the
/// row commands.
std::unique_ptr<WindowPart> makeEditItems(frmGrl& window);
std::unique_ptr<WindowPart> makeContextMenu(frmGrl& window);

} // namespace shell
