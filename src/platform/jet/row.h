#pragma once

#include "field.h"
#include "table_def.h"

#include <optional>

namespace jet {

/// A stored row, taken apart: where each column's bytes lie.
class StoredRow {
  public:
    /// Corrupt when the row's tables lie outside it.
    StoredRow(const View& row, const Layout& layout, const TableDef& def);

    /// The column has a value (Boolean: is true).
    [[nodiscard]] bool isSet(const ColumnDef& column) const;
    /// The stored bytes of a column that is set and no Boolean.
    [[nodiscard]] View field(const ColumnDef& column) const;
    [[nodiscard]] std::size_t columnCount() const { return m_columns; }
    /// Where the variable part starts, which is where the fixed one ends.
    [[nodiscard]] std::size_t fixedEnd() const;

  private:
    [[nodiscard]] std::size_t offset(std::size_t entry) const;

    View m_row;
    bool m_jet4;
    std::size_t m_columns;
    std::size_t m_maskAt;
    std::size_t m_variable = 0; ///< entries of the table of variable offsets, the last one aside
    std::size_t m_jumps = 0;
};

/// Bytes of a row whose variable columns are all Null: no row of such a table is shorter.
[[nodiscard]] std::size_t shortestRow(const Layout& layout, std::size_t columns, std::size_t fixedBytes,
                                      std::size_t variableColumns);

/// Builds rows of one table.
class RowBuilder {
  public:
    RowBuilder(const Layout& layout, const TableDef& def);

    /// Every column has its own place in a row. A table that is damaged in this can be read, not changed.
    [[nodiscard]] bool placesDiffer() const { return m_placesDiffer; }

    /// The stored form of `row`; `references` holds for each long value column what long_value.h gave for it.
    /// RowTooLong.
    void build(const Row& row, const std::vector<Bytes>& references, Bytes& out);

  private:
    void appendTables(Bytes& out) const;

    const Layout& m_layout;
    std::size_t m_columns;
    std::size_t m_fixedBytes = 0;
    bool m_hasVariable;
    bool m_placesDiffer = true;
    struct Place {
        const ColumnDef* column;
        std::size_t position; ///< in the row
    };
    std::vector<Place> m_fixed;
    std::vector<Place> m_variable; ///< by slot; null for those of deleted columns
    std::vector<Place> m_booleans;
    std::vector<std::size_t> m_offsets;
    Bytes m_mask;
};

} // namespace jet
