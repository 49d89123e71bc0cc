#pragma once

#include "parts.h"

#include "../table_stream.h"

#include <optional>
#include <string>
#include <string_view>

// The formats that the reader knows. Each writes the names of all sheets and the content of one: the one of
// that name, or else the one that the file opens with. All raise Unreadable.

namespace tables {

using Wanted = std::optional<std::string>; ///< the sheet's name

/// An Office Open XML workbook (.xlsx, .xlsm).
void readXlsx(Parts& parts, const Wanted& wanted, Writer& out);

/// An OpenDocument spreadsheet (.ods).
void readOds(Parts& parts, const Wanted& wanted, Writer& out);

/// Text in columns: UTF-8 with or without a mark, UTF-16 with or without one, else Windows-1252; separated
/// by the tab, semicolon or comma that most lines hold; fields may be quoted. Every field is a Text, empty
/// ones too, and rows are numbered by their lines. A line with another separator is left out and noted.
void readDelimited(std::string_view bytes, Writer& out);

/// Tells the formats apart by their first bytes, and calls one of the above.
void readFile(const std::string& path, const Wanted& wanted, Writer& out);

} // namespace tables
