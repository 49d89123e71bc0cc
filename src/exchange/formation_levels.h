#pragma once

#include "desktop/desktop.h"
#include "export_frame.h"
#include "sheet/book.h"

namespace exchange {

// Both are true when all rows went well and the file is written.

/// Sends the levels of the book as formation levels into the road database in lblProj: adds the chainages and
/// points that it lacks (remark "FF") and writes the level of those it has ("GF"). Hides the frame at the
/// end. An error ends it: what was saved before stays saved, and the status bar gives the engine's words.
/// Chainages whose long section was left with the level of a side point are among the notices.
bool CFrl(sheet::Book& book, desktop::Desktop& desktop, ExportFrame& frame);

/// Ctrl+Enter on Transfer: writes formation levels of the centre readings that the road database has, and of
/// all side readings, which are added where they are missing and marked as not computed. Errors as above.
bool updateFormationLevels(const sheet::Grid& grid, desktop::Desktop& desktop, const ExportFrame& frame);

} // namespace exchange
