#pragma once

#include <string>
#include <string_view>

// The statements that the engine runs: "Delete * From T" and "alter table T add [column] F TYPE".

namespace dao {

struct Statement {
    enum class Kind { DeleteAll, AddColumn };
    Kind kind;
    std::string table;
    std::string column; ///< of AddColumn
    std::string type;   ///< of AddColumn: its words as they stand, for instance "Text(25)"
};

/// Key words in any letter case, names plain or in brackets, a semicolon at the end. Raises 3292 for an alter
/// statement that is not of this form or has no type, 3129 for anything else.
[[nodiscard]] Statement parseStatement(std::string_view text);

} // namespace dao
