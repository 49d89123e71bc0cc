#pragma once

#include "column_guess.h"

#include <string>

// What the user chose for the columns under a heading, kept in a text file: a line a heading, the words of
// the kinds parted by commas, then the headings, all parted by tabs.

namespace exchange {

/// Puts the kinds that `file` remembers for the headings of `layout` into it; false when there are none. A
/// file that cannot be read remembers nothing.
bool recallColumns(const std::string& file, Layout& layout);

/// Remembers the kinds of `layout` for its headings, in front of what was remembered before. Raises
/// RuntimeError when the file cannot be written.
void rememberColumns(const std::string& file, const Layout& layout);

} // namespace exchange
