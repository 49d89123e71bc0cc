#pragma once

#include "data_page.h"
#include "index.h"
#include "long_value.h"
#include "row.h"
#include "table.h"

namespace jet {

/// What a Table handle stands for: the definition, maps, trees and long values of one table, shared by all
/// its handles. The functions are those of Table.
class TableStore {
  public:
    TableStore(Pager& pager, std::string name, std::uint32_t definitionPage);

    [[nodiscard]] const std::string& name() const { return m_name; }
    [[nodiscard]] const TableDef& def() const { return m_def; }
    [[nodiscard]] std::vector<Column>& columns() { return m_columns; }
    [[nodiscard]] const std::vector<IndexInfo>& indexes() const { return m_indexes; }
    [[nodiscard]] Pager& pager() { return m_pager; }
    /// Counts every change of a row.
    [[nodiscard]] std::uint64_t changes() const { return m_changes; }
    [[nodiscard]] UsageMap& ownedPages() { return m_ownedPages; }
    [[nodiscard]] Index& tree(std::size_t data) { return *m_trees[data]; }

    /// False when there is no row with that home.
    [[nodiscard]] bool exists(RowId id);
    void read(RowId id, Row& into) { decode(rowView(id), into); }
    void decode(const View& row, Row& into);
    [[nodiscard]] View rowView(RowId id); ///< the stored bytes
    [[nodiscard]] std::uint32_t countRows();
    /// Bytes of the long values of a row.
    [[nodiscard]] std::size_t longValueSize(const Row& row) const;
    void requireWritable() const;   ///< ReadOnly, EncodedWrite; Corrupt when columns lie over each other
    void requireKnownOrder() const; ///< UnsupportedSort when an index cannot take or lose a key
    /// The number behind the highest one; counting goes on at the lowest behind the last.
    [[nodiscard]] std::int32_t nextAutonumber() const {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(m_def.autonumber) + 1);
    }
    RowId insert(const Row& row);
    void update(RowId id, const Row& row);
    void erase(RowId id);
    void clear();
    void seek(int index, std::span<const Value> key, const std::function<bool(RowId)>& take);

    /// Gives a new column its place in a row. InvalidDesign when a row would have no room for it.
    void findPlace(ColumnDef& column);
    /// Appends a column; existing rows are written anew where the format needs it.
    void addColumn(ColumnDef column, const LongValueMaps* maps);
    /// Brings counters and separators that are kept aside into the pages.
    void flush();
    void verifyTrees(); ///< Index::verify() of each

  private:
    struct Body {
        RowPointer at;
        bool overflow;
    };
    struct Key {
        Bytes bytes;
        bool there = false; ///< the row is in the index
    };
    using Keys = std::vector<Key>; ///< one a tree
    /// The key of the text that a column had last: neighbouring rows often share it.
    struct LastText {
        std::string text;
        bool ascending = true;
        Bytes key;
    };

    void describe();
    [[nodiscard]] bool known(const IndexData& data) const;
    [[nodiscard]] Body locate(RowId id);
    [[nodiscard]] View bodyView(const Body& body);
    [[nodiscard]] Slot homeOf(RowId id, View& page);
    [[nodiscard]] Body bodyOf(RowId id, const Slot& home, const View& page);
    void keysOf(const Row& row, Keys& keys);
    void addToKey(Bytes& key, std::size_t column, bool ascending, const Value& value);
    [[nodiscard]] bool hasValues(RowId id, const IndexInfo& info, std::span<const Value> wanted);
    void count();
    [[nodiscard]] bool contains(std::size_t tree, const Bytes& key) const;
    void requireFreeKeys(const Keys& keys, const Keys& old);
    void requireKeptKeys(const Row& row, const Row& old) const;
    void changeKeys(const Keys& old, const Keys& fresh, RowPointer row);
    void addKey(std::size_t tree, ByteView key, RowPointer row);
    void removeKey(std::size_t tree, ByteView key, RowPointer row);
    LongValues* longValues(std::uint16_t column);
    [[nodiscard]] std::optional<View> keptReference(std::size_t column, const Row& row, const Row* old,
                                                    const StoredRow* stored) const;
    void buildProbe(const Row& row, const Row* old = nullptr, const StoredRow* stored = nullptr);
    std::vector<Bytes> storeLongValues(const Row& row, const Row* old, const StoredRow* stored);
    void releaseLongValues(const StoredRow& stored);
    [[nodiscard]] std::uint32_t pageFor(std::size_t length);
    RowPointer place(ByteView bytes, std::uint16_t flags);
    void replaceBody(RowId id, const Body& body, ByteView bytes);
    void leavePointer(RowPointer home, RowPointer moved);
    void moveLongestRow(std::uint32_t page);
    void dropSlot(RowPointer at);
    void noteSpace(std::uint32_t page);
    void noteAutonumber(const Row& row);

    Pager& m_pager;
    std::string m_name;
    TableDef m_def;
    std::vector<Column> m_columns;
    std::vector<IndexInfo> m_indexes;
    UsageMap m_ownedPages;
    UsageMap m_freeSpacePages;
    std::vector<std::unique_ptr<Index>> m_trees;
    std::vector<bool> m_ordered; ///< one a tree: the order of its keys is known
    bool m_allOrdered = true;
    std::optional<std::size_t> m_numbered;                 ///< the column that is numbered by itself
    std::vector<LastText> m_lastTexts;                     ///< one a column
    Keys m_keys;                                           ///< kept to be used again
    Bytes m_soughtKey;                                     ///< the last one
    std::optional<std::size_t> m_missingIn;                ///< the tree in which no entry starts with it
    std::uint64_t m_missingAt = 0;                         ///< changes of the table when that was seen
    std::vector<std::unique_ptr<LongValues>> m_longValues; ///< as in the definition
    std::unique_ptr<RowBuilder> m_builder;
    Bytes m_row;                 ///< kept to be used again
    bool m_counted = false;      ///< the number of rows is known to be right
    std::uint64_t m_changes = 0; ///< since it was opened
};

} // namespace jet
