#pragma once

#include "bytes.h"
#include "layout.h"
#include "value.h"

#include <string>
#include <vector>

namespace jet {

class Pager;

/// Flags of a column.
constexpr std::uint8_t columnFixed = 0x01;      ///< stored in the fixed part of the row
constexpr std::uint8_t columnAlways = 0x02;     ///< set in every column
constexpr std::uint8_t columnAutonumber = 0x04; ///< of type Long
constexpr std::uint8_t columnOfSystem = 0x10;
constexpr std::uint8_t columnOfAccount = 0x20;  ///< with columnOfSystem, on account ids
constexpr std::uint8_t columnCompressed = 0x01; ///< in the second flag byte

/// Flags of an index.
constexpr std::uint8_t indexUnique = 0x01;
constexpr std::uint8_t indexIgnoreNulls = 0x02;
constexpr std::uint8_t indexRequired = 0x08;
constexpr std::uint8_t indexAlwaysJet4 = 0x80;

constexpr std::uint16_t generalSort = 0x0409;

/// A column as its block in the definition describes it.
struct ColumnDef {
    std::string name;
    ColumnType type = ColumnType::Text;
    std::uint16_t number = 0;       ///< its bit in the null mask
    std::uint16_t variableSlot = 0; ///< its place in the variable offsets
    std::uint16_t sortOrder = generalSort;
    std::uint8_t sortVersion = 0;
    std::uint8_t precision = 0; ///< of Numeric, which has them in place of the sort order
    std::uint8_t scale = 0;
    std::uint8_t flags = columnAlways;
    std::uint8_t flags2 = 0;
    std::uint16_t fixedOffset = 0; ///< behind the column count of the row
    std::uint16_t length = 0;      ///< in bytes

    [[nodiscard]] bool fixed() const { return (flags & columnFixed) != 0; }
    [[nodiscard]] bool isLongValue() const { return type == ColumnType::Memo || type == ColumnType::Ole; }
    [[nodiscard]] bool isText() const { return type == ColumnType::Memo || type == ColumnType::Text; }
};

/// A tree of keys; one or more logical indexes use it.
struct IndexData {
    struct Part {
        std::uint16_t column; ///< its number
        bool ascending;
    };
    std::vector<Part> columns;
    RowPointer map; ///< of its pages
    std::uint32_t root = 0;
    std::uint8_t flags = 0;
    std::uint32_t entries = 0; ///< counter A
    std::uint32_t keys = 0;    ///< counter B: different keys
};

enum class IndexUse : std::uint8_t { Ordinary = 0, PrimaryKey = 1, Relation = 2 };

struct LogicalIndex {
    std::string name;
    std::uint32_t number = 0;
    std::uint32_t data = 0; ///< position in TableDef::indexData
    std::uint8_t relation = 0;
    std::uint32_t otherIndex = 0xFFFFFFFF;
    std::uint32_t otherTable = 0; ///< definition page
    IndexUse use = IndexUse::Ordinary;
};

/// Maps of the pages of a long value column.
struct LongValueMaps {
    std::uint16_t column = 0; ///< its number
    RowPointer pages;
    RowPointer freeSpace; ///< may be none
};

constexpr std::uint8_t userTable = 0x4E;
constexpr std::uint8_t systemTable = 0x53;

/// A table's definition. It is kept as the string of bytes that the file holds, so that what is not
/// understood survives a change; the members are a reading of it.
class TableDef {
  public:
    std::uint32_t page = 0; ///< the first page
    std::uint8_t kind = userTable;
    std::uint32_t rowCount = 0;
    std::int32_t autonumber = 0;     ///< the last one given out
    std::uint16_t maxColumns = 0;    ///< columns ever made
    std::uint16_t variableSlots = 0; ///< ever made
    RowPointer ownedPages;
    RowPointer freeSpacePages;
    std::vector<ColumnDef> columns; ///< by their numbers, once loaded or created
    std::vector<IndexData> indexData;
    std::vector<LogicalIndex> indexes;
    std::vector<LongValueMaps> longValues;

    /// Reads the definition that starts on `page`. Corrupt.
    [[nodiscard]] static TableDef load(Pager& pager, std::uint32_t page);
    /// Makes the bytes of a new definition from the members and stores it on page `page`, which is allocated.
    void create(Pager& pager);
    /// Appends a column; its number is set. A long value column brings its maps. Stores the definition.
    void addColumn(Pager& pager, ColumnDef column, const LongValueMaps* maps);
    /// Stores row count, autonumber and index counters.
    void saveCounters(Pager& pager);

    [[nodiscard]] const std::vector<std::uint32_t>& pages() const { return m_pages; }
    [[nodiscard]] const ColumnDef* columnOfNumber(std::uint16_t number) const;
    /// Offset in the definition of the counters of index data `number`.
    [[nodiscard]] std::size_t countersAt(const Layout& layout, std::size_t number) const {
        return layout.countersAt + number * layout.counterBytes;
    }

  private:
    void readPages(Pager& pager);
    void parse(const Layout& layout);
    void store(Pager& pager);

    std::vector<std::uint32_t> m_pages;
    Bytes m_string;
    std::size_t m_columnBlocksEnd = 0;
    std::size_t m_columnNamesEnd = 0;
    std::size_t m_longValuesEnd = 0;
};

} // namespace jet
