#pragma once

#include "window_part.h"

namespace shell {

/// The menu View with "Long section" and "Cross-section" and the two panes that they open and close: the
/// whole road below the grid, the chainage of the cursor with its neighbours beside it. Both follow the book.
std::unique_ptr<WindowPart> makeSectionPanes(frmGrl& window);

} // namespace shell
