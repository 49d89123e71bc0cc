#pragma once

#include "project/book.h"

#include <iosfwd>
#include <string>

namespace cli {

class StreamDesktop;

/// Loads a project; false when it cannot be, which was said with its path.
[[nodiscard]] bool openProject(project::Book& book, StreamDesktop& desktop, const std::string& path);

/// The text at `path`, of standard input for "-". Raises the error of reading a file.
[[nodiscard]] std::string textOf(const std::string& path, std::istream& in);

/// Loads the book of a project (".grl"), of a CSV file, or of standard input ("-") in CSV form. False when it
/// cannot be, which was said in `err`.
[[nodiscard]] bool loadBook(project::Book& book, const std::string& path, std::istream& in,
                            std::ostream& err);

} // namespace cli
