#pragma once

#include "dao.h"

#include "jet/table.h"

// Values between the program and the columns of a table, converted as Jet does on assignment.

namespace dao {

[[nodiscard]] Value fromColumn(const jet::Value& value, const jet::Column& column);

enum class LengthCheck { Yes, No };

/// `value` as the column stores it. 3421 when it does not convert, 3163 for a text or bytes longer than the
/// column (not when `check` is No). Zero is never minus zero.
[[nodiscard]] jet::Value toColumn(const Value& value, const jet::Column& column,
                                  LengthCheck check = LengthCheck::Yes);

} // namespace dao
