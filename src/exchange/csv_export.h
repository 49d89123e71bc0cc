#pragma once

#include "desktop/desktop.h"
#include "project/book.h"

#include <functional>
#include <string>

namespace exchange {

/// The whole grid, header included, as the text of a CSV file in UTF-8, with a byte-order mark when
/// it holds a letter beyond ASCII. `rowDone` hears how many rows are
/// done.
[[nodiscard]] std::string csvText(const sheet::Grid& grid, const std::function<void(int)>& rowDone = {});

/// Writes the book to the CSV file beside its project file ("Site1.csv" for "Site1.grl"), replacing an
/// earlier one whole. A failure leaves the old file and is said in the status bar.
void exportCsv(project::Book& book, desktop::Desktop& desktop);

/// Writes the change-point list of the book in the same way, to "Site1cp.csv".
void exportChangePoints(sheet::Grid& list, const project::Book& book, desktop::Desktop& desktop);

} // namespace exchange
