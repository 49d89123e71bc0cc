#pragma once

#include "window_part.h"

namespace shell {

/// The items "Bigger letters" and "Smaller letters" of the menu View: the sizes that F12 goes through.
std::unique_ptr<WindowPart> makeLettersItems(frmGrl& window);

} // namespace shell
