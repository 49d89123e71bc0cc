#pragma once

#include <string>
#include <string_view>
#include <vector>

// The statements that the engine runs: "Delete * From T", "alter table T add [column] F TYPE" and
// "create table T (F TYPE [primary key], ...)".

namespace dao {

struct Statement {
    enum class Kind { DeleteAll, AddColumn, CreateTable };
    struct Column {
        std::string name;
        std::string type; ///< its words as they stand, for instance "Text(25)"
        bool primaryKey = false;
    };
    Kind kind;
    std::string table;
    std::vector<Column> columns = {}; ///< one of AddColumn, all of CreateTable
};

/// Key words in any letter case, names plain or in brackets, a semicolon at the end. Raises 3292 for an alter
/// or create statement that is not of this form or has no type, 3129 for anything else.
[[nodiscard]] Statement parseStatement(std::string_view text);

} // namespace dao
