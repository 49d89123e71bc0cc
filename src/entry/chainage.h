#pragma once

#include "desktop/desktop.h"
#include "sheet/book.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace entry {

/// Kilometres to chainage text, whole metres: 1.25 gives "01-250".
[[nodiscard]] std::string FtoS(float kilometres);

/// Chainage text to whole metres; `text` is replaced by its trimmed first six characters.
[[nodiscard]] std::int32_t StoF(std::string& text);

/// The chainage one increment (metres, a text such as "20") further. Raises TypeMismatch (13) when it goes
/// back over a kilometre whose text is no number.
[[nodiscard]] std::string StrToFig(std::string_view chainage, std::string_view increment);

/// The check made when the cursor leaves a cell: completes ".5", clears the mark of a small I.S., asks for
/// the hyphen of a chainage. An error is shown and ends the check.
void leaveCell(sheet::Book& book, desktop::Desktop& desktop);

} // namespace entry
