#pragma once

#include "window_part.h"

namespace shell {

/// "Import from file..." of the menu Tools, and files dropped on the window: reads a table or a digital
/// level's file, lets the user say what its columns are or choose its line, and takes it as one step.
std::unique_ptr<WindowPart> makeImportPanel(frmGrl& window);

} // namespace shell
