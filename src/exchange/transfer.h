#pragma once

#include "desktop/desktop.h"
#include "export_frame.h"
#include "project/book.h"

namespace exchange {

/// How a transfer ended. Whatever it is, nothing is left behind in the program folder.
enum class TransferEnd {
    Done,       ///< the project folder is made
    DoneInPart, ///< it is, but the project file lacks some cells of the book; the status bar names them
    Sent,       ///< all levels went as formation levels
    Stopped,    ///< something to enter first, which the frame says, or the book was not saved
    Refused,    ///< rows are marked; the cursor stands on the lowest of them
    Failed,     ///< an error, which was shown, or said in the status bar by the formation levels
};

/// The export button: reduces the book and shows the frame; a book without a row below the starting one only
/// gets a message. False when there is nothing to send: no frame, or a reduction that stopped.
bool showExportFrame(project::Book& book, desktop::Desktop& desktop, ExportFrame& frame);

/// Transfer in the frame: checks the book, saves it, and makes the project folder of the road program under
/// the default folder: Road.mdb, Road.dwg, LRod.dwg and a copy of the project. Works on a copy of the
/// template "Rod.mdb" in the program folder. Never throws a RuntimeError.
TransferEnd transfer(project::Book& book, desktop::Desktop& desktop, ExportFrame& frame);

/// Cancel in the frame.
void cancelExport(desktop::Desktop& desktop, ExportFrame& frame);

} // namespace exchange
