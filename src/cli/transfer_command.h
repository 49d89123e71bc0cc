#pragma once

#include "exit_status.h"

#include "exchange/export_frame.h"

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

namespace cli {

/// A text box of the export frame that the command line can fill: its option, what it holds, and where it
/// goes.
struct FrameOption {
    const char* option;
    const char* help;
    exchange::TextBox exchange::ExportFrame::*box;
};
[[nodiscard]] const std::vector<FrameOption>& frameOptions();

struct TransferOptions {
    std::string book;      ///< the project
    std::string folder;    ///< the parent of the project folder
    std::string gutter;    ///< "slope" or "top"
    std::string frl;       ///< a road database to send formation levels to instead
    std::string frlUpdate; ///< a road database to update formation levels in instead
    /// Texts given for boxes of the frame, by their place in frameOptions().
    std::vector<std::pair<std::size_t, std::string>> boxes;
};

/// Loads and reduces the project and runs the transfer of the window, or one of the two ways to send
/// formation levels. The road database's path goes to `out`. A refused transfer says the count of errors and
/// then one line a marked row in `err`.
ExitStatus transfer(const TransferOptions& options, std::ostream& out, std::ostream& err);

} // namespace cli
