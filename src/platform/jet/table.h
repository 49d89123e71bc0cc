#pragma once

#include "value.h"

#include <compare>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

class TableStore;

/// The stable name of a row while the row lives: the page and slot of its home.
struct RowId {
    std::uint32_t page = 0;
    std::uint8_t slot = 0;
    friend auto operator<=>(const RowId&, const RowId&) = default;
};

struct Column {
    std::string name;
    ColumnType type = ColumnType::Text;
    int size = 0; ///< characters of Text, bytes of other types, 0 of long values
    bool autonumber = false;
    bool required = false;        ///< a property; it is up to the caller to honour it
    bool allowZeroLength = false; ///< likewise
    std::uint8_t precision = 0;   ///< Numeric only
    std::uint8_t scale = 0;       ///< Numeric only
};

struct IndexInfo {
    struct Part {
        int column; ///< position in Table::columns()
        bool ascending;
    };
    std::string name;
    std::vector<Part> columns;
    bool unique = false;
    bool primaryKey = false;
    bool required = false;    ///< Null in any of the columns is refused
    bool ignoreNulls = false; ///< rows with Null in all of the columns are not in the index
    bool relation = false;    ///< made for a relation, not by the user
    bool seekable = true;     ///< false: a sort order that is not known; look at the rows instead
};

/// Goes through the rows of a table in the order of its pages. Rows that are changed, deleted or added while
/// it stands somewhere are met in their new state; it stays valid through all of that.
class Cursor {
  public:
    /// Steps to the next row; false when there is none (and again on every later call, unless rows came).
    bool next();
    [[nodiscard]] RowId id() const { return m_at; }
    /// The row that the cursor stands on, decoded at the first call; valid until next().
    [[nodiscard]] const Row& row();
    /// The same into a row that is used again. NotFound when it was deleted.
    void read(Row& into) const;
    /// The table has not changed since next().
    [[nodiscard]] bool isFresh() const;

    explicit Cursor(TableStore& store) : m_store(&store) {} ///< inside the engine

  private:
    TableStore* m_store;
    RowId m_at{};
    int m_nextSlot = 0;
    bool m_decoded = false;
    std::uint32_t m_start = 0; ///< of the row on its page; 0 = to be looked for
    std::uint32_t m_length = 0;
    std::uint64_t m_seen = 0;      ///< changes of the table when it was there
    std::uint64_t m_longBytes = 0; ///< of the rows decoded so far
    Row m_row;
};

/// A table of an open database: a light handle that must not outlive it. All changes stay in memory until
/// Database::commit(). Every change keeps all indexes of the table; a change that is refused for its values
/// (DuplicateKey, NullKey, TextTooLong, TypeMismatch, RowTooLong) leaves everything as it was.
class Table {
  public:
    [[nodiscard]] const std::string& name() const;
    [[nodiscard]] const std::vector<Column>& columns() const;
    [[nodiscard]] std::optional<int> column(std::string_view name) const; ///< position; any letter case
    [[nodiscard]] const std::vector<IndexInfo>& indexes() const;
    [[nodiscard]] std::optional<int> index(std::string_view name) const; ///< position; any letter case
    /// As the definition counts them, which may be wrong in files of other programs; scan() goes to the end.
    [[nodiscard]] std::uint32_t rowCount() const;
    /// The rows that scan() meets, by a look at each page. Corrupt.
    [[nodiscard]] std::uint32_t countRows() const;
    /// The autonumber that the next row with Null in that column gets.
    [[nodiscard]] std::int32_t nextAutonumber() const;

    /// Counts every change of a row since the database was opened, by this handle or another.
    [[nodiscard]] std::uint64_t changes() const;

    [[nodiscard]] Cursor scan() const;
    [[nodiscard]] Row read(RowId id) const; ///< NotFound when no row lives there
    void read(RowId id, Row& into) const;   ///< the same into a row that is used again
    [[nodiscard]] bool exists(RowId id) const;

    /// `row` has one value a column. Null in an autonumber column becomes the next number.
    RowId insert(const Row& row);
    void update(RowId id, const Row& row); ///< the id stays
    void erase(RowId id);
    void clear(); ///< all rows; their pages are given back

    /// The first row (in the order of the index) whose leading key columns equal `key`, which may be shorter
    /// than the key. UnsupportedSort when the index is not seekable.
    [[nodiscard]] std::optional<RowId> seek(int index, std::span<const Value> key) const;
    /// All rows in the order of the index whose leading key columns equal `key`; every row for an empty key.
    [[nodiscard]] std::vector<RowId> seekAll(int index, std::span<const Value> key) const;

  private:
    friend class Database;
    explicit Table(std::shared_ptr<TableStore> store) : m_store(std::move(store)) {}
    std::shared_ptr<TableStore> m_store;
};

} // namespace jet
