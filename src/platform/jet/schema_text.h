#pragma once

#include "design.h"

#include <string>
#include <string_view>
#include <vector>

namespace jet {

class Database;

/// The layout of a database, as a small text says it:
///
///     # comment
///     password MoraKin
///     table CSect
///         Chn    Text(25)  zero-length
///         Oft    Double    required
///         [a b]  Long                          a name with blanks, or one that is a key word, in brackets
///         primary key CSO (Chn, Oft desc)
///         unique index B (Oft) required
///         index C (Chn) ignore-nulls
///
/// Types are those of columnTypeOf. `zero-length` lets empty text in; `required` refuses Null, in a column by
/// a property of it and in an index by the index; `plain` stores text uncompressed.
struct Schema {
    std::string password;
    std::vector<TableDesign> tables;
};

/// Raises InvalidDesign with the number of the line that is wrong.
[[nodiscard]] Schema parseSchema(std::string_view text);

/// The schema as text that parseSchema reads back; the password is left out.
[[nodiscard]] std::string schemaText(const Schema& schema);

/// The user tables of a database. Indexes that the engine made for relations are left out.
[[nodiscard]] Schema schemaOf(Database& database);

/// Makes the tables in a database that has none of them.
void createTables(Database& database, const Schema& schema);

} // namespace jet
