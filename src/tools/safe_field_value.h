#pragma once

#include "dao/dao.h"

namespace mdlTools {

/// The field's value, or when it is Null a default by its type: False, 0, an empty text, the text
/// "01-01-2001" for a date; Null for any other type.
[[nodiscard]] dao::Value SafeFieldValue(const dao::Field& field);

/// What a Null of `type` reads as.
[[nodiscard]] dao::Value nullDefault(dao::DataType type);

} // namespace mdlTools
