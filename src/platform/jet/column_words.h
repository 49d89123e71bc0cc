#pragma once

#include "design.h"

#include <optional>
#include <string>
#include <string_view>

namespace jet {

/// The type, and the size of Text and Binary, that words such as "Single", "Text(25)" or "long" ask for; the
/// words are those of the engine's data definition language, in any letter case. Nothing when they are no
/// type. Only the members for the type are set in the result.
[[nodiscard]] std::optional<ColumnDesign> columnTypeOf(std::string_view words);

/// The words for a column's type, which columnTypeOf reads back: "Text(25)", "Counter", "Numeric(18,4)".
[[nodiscard]] std::string wordsFor(const ColumnDesign& column);

} // namespace jet
