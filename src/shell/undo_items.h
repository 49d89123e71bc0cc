#pragma once

#include "window_part.h"

namespace shell {

/// Undo and Redo in the menu "Edit", with the name of the step that they are about.
std::unique_ptr<WindowPart> makeUndoItems(frmGrl& window);

} // namespace shell
