#pragma once

#include "value.h"

#include <string>
#include <vector>

namespace jet {

/// A column to be made.
struct ColumnDesign {
    std::string name;
    ColumnType type = ColumnType::Text;
    int size = 0; ///< characters of Text, bytes of Binary; 0 = the longest. Ignored for other types.
    bool autonumber = false;      ///< Long only
    bool required = false;        ///< stored as a property of the column
    bool allowZeroLength = false; ///< stored as a property of the column
    bool compressed = true;       ///< Text and Memo of Jet 4: characters below U+0100 may take one byte
    std::uint8_t precision = 18;  ///< Numeric only
    std::uint8_t scale = 0;       ///< Numeric only
};

struct IndexColumn {
    std::string name;
    bool ascending = true;
};

enum class IndexKind { Plain, Unique, PrimaryKey };

/// An index to be made. A primary key is unique and refuses Null.
struct IndexDesign {
    std::string name;
    std::vector<IndexColumn> columns = {};
    IndexKind kind = IndexKind::Plain;
    bool required = false;    ///< refuse Null in any of the columns
    bool ignoreNulls = false; ///< rows with Null in all of the columns are not in the index
};

struct TableDesign {
    std::string name;
    std::vector<ColumnDesign> columns = {};
    std::vector<IndexDesign> indexes = {};
};

} // namespace jet
