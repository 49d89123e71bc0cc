#pragma once

#include "report.h"
#include "sheet/book.h"

namespace project {

/// Keeps the version on disk of a book that has a file as ".bak". False when that version is another
/// program's and could not be kept: then it must not be overwritten.
[[nodiscard]] bool backUp(const sheet::Book& book, Report& report);

} // namespace project
