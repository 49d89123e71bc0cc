#pragma once

#include "sheet/book.h"

#include <iosfwd>
#include <string>

namespace cli {

/// Loads the book of a project (".grl"), of a CSV file, or of standard input ("-") in CSV form. False when it
/// cannot be, which was said in `err`.
[[nodiscard]] bool loadBook(sheet::Book& book, const std::string& path, std::istream& in, std::ostream& err);

} // namespace cli
