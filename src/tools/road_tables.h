#pragma once

#include "dao/dao.h"

#include <cstdint>
#include <optional>
#include <string>

// The road-design database as mdlTools knows it: the fields of its table LSect and the handles that the
// transfer holds while the database is open.

namespace mdlTools {

/// Fields of LSect, numbered from 1.
inline constexpr int lSectFieldCount = 47;

/// Name of field `index`; SubscriptOutOfRange (9) outside 0 .. 47. Entry 0 is empty, and so is every entry
/// before InitLSectFieldTable.
[[nodiscard]] const std::string& LSectFieldName(int index);

/// Type code of field `index`: "N" a Single, "B" a Byte, "T25", "T50" and "T01" texts of that length, "Y" a
/// flag. Range as above.
[[nodiscard]] const std::string& LSectFieldType(int index);

/// Fills both tables. The first act of the program.
void InitLSectFieldTable();

/// The open road database and its table LSect; empty while none is open. The table goes before its database.
inline std::optional<dao::Database> RoadDb;
inline std::optional<dao::Recordset> RoadLSect;

/// Adds field `index` to LSect of RoadDb and reopens RoadLSect. A flag's statement has no type word, and the
/// engine decides what becomes of it. SubscriptOutOfRange (9) outside 0 .. 47; the engine's errors pass.
void AddLSectField(std::int16_t index);

} // namespace mdlTools
