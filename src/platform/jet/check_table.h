#pragma once

#include "check_ledger.h"
#include "row.h"

#include <functional>
#include <map>
#include <utility>

namespace jet {

/// A row's entry in an index as the row's values ask for it.
struct ExpectedEntry {
    Bytes bytes; ///< key and row pointer
    bool allNull = false;
};

/// Checks one table: its definition, pages, rows, long values and indexes.
class TableCheck {
  public:
    TableCheck(Pager& pager, PageLedger& ledger, Faults& faults, const TableDef& def, std::string name)
        : m_pager(pager), m_ledger(ledger), m_faults(faults), m_def(def), m_name(std::move(name)) {}

    /// Shows every sound row to `see`.
    void run(const std::function<void(const Row&)>& see);

  private:
    /// Pieces of the long values of a column: packed row pointers; true once referred to.
    using Pieces = std::map<std::uint32_t, bool>;

    void checkDefinitionPages();
    void checkColumns();
    void checkIndexBlocks();
    [[nodiscard]] std::vector<std::uint32_t> ownedPages();
    void collectPieces();
    void checkPage(std::uint32_t page);
    void checkRow(RowPointer home, const View& body);
    void checkReference(RowPointer home, const ColumnDef& column, const View& reference);
    bool takePiece(RowPointer home, Pieces& pieces, RowPointer piece);
    void expectEntries(RowPointer home, const Row& row);
    void checkLeftOvers();
    [[nodiscard]] std::string part(const std::string& what) const { return what + " of '" + m_name + "'"; }

    Pager& m_pager;
    PageLedger& m_ledger;
    Faults& m_faults;
    const TableDef& m_def;
    std::string m_name;
    const std::function<void(const Row&)>* m_see = nullptr;
    std::uint32_t m_rows = 0;
    std::map<std::uint32_t, bool> m_overflow; ///< bodies of rows elsewhere; true once referred to
    std::vector<std::pair<RowPointer, RowPointer>> m_pointers; ///< home and body
    std::map<std::uint16_t, Pieces> m_pieces;                  ///< by column number
    std::vector<std::vector<ExpectedEntry>> m_expected;        ///< by index data
};

/// Checks the tree of one index and compares its entries with those that the rows ask for; `known` is false
/// for a sort order that is not known: then only the number of entries is compared.
void checkIndex(Pager& pager, PageLedger& ledger, Faults& faults, const TableDef& def, std::size_t number,
                const std::string& name, std::vector<ExpectedEntry>& expected, bool known);

} // namespace jet
