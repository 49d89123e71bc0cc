#pragma once

#include "window_part.h"

namespace shell {

/// Tells in the status bar, behind what the action itself said, what it did that nobody may have meant.
std::unique_ptr<WindowPart> makeNoticeLine(frmGrl& window);

} // namespace shell
