#pragma once

#include "../window_part.h"

namespace shell {

/// Print, preview and PDF in the menu File, sections to DXF and LandXML in the menu Tools.
std::unique_ptr<WindowPart> makePrintItems(frmGrl& window);

} // namespace shell
