#include "table_store.h"

#include "data_page.h"
#include "pager.h"
#include "sort_key.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::size_t longestKept = 64; ///< bytes of a text whose key is worth keeping

[[noreturn]] void failNoRow() {
    throw Error(ErrorKind::NotFound, "No current record.");
}

} // namespace

TableStore::TableStore(Pager& pager, std::string name, std::uint32_t definitionPage)
    : m_pager(pager),
      m_name(std::move(name)),
      m_def(TableDef::load(pager, definitionPage)),
      m_ownedPages(pager, m_def.ownedPages),
      m_freeSpacePages(pager, m_def.freeSpacePages) {
    m_counted = m_def.rowCount == 0 && m_ownedPages.next(0) == 0;
    describe();
}

/// Derives what the face shows, and the tools that hang on the definition.
void TableStore::describe() {
    m_columns.clear();
    m_numbered.reset();
    m_lastTexts.assign(m_def.columns.size(), {});
    for (const ColumnDef& def : m_def.columns) {
        Column column;
        column.name = def.name;
        column.type = def.type;
        const bool halves = def.type == ColumnType::Text && m_pager.format() == Format::Jet4;
        column.size = def.isLongValue() ? 0 : halves ? def.length / 2 : def.length;
        column.autonumber = def.type == ColumnType::Long && (def.flags & columnAutonumber) != 0;
        if (def.type == ColumnType::Numeric) {
            column.precision = def.precision;
            column.scale = def.scale;
        }
        if (column.autonumber && !m_numbered) m_numbered = m_columns.size();
        m_columns.push_back(std::move(column));
    }
    m_ordered.clear();
    for (const IndexData& data : m_def.indexData)
        m_ordered.push_back(known(data));
    m_allOrdered = std::ranges::count(m_ordered, false) == 0;
    m_indexes.clear();
    for (const LogicalIndex& def : m_def.indexes) {
        const IndexData& data = m_def.indexData[def.data];
        IndexInfo info;
        info.name = def.name;
        for (const IndexData::Part& part : data.columns) {
            const auto position = m_def.columnOfNumber(part.column) - m_def.columns.data();
            info.columns.push_back({static_cast<int>(position), part.ascending});
        }
        info.primaryKey = def.use == IndexUse::PrimaryKey;
        info.unique = info.primaryKey || (data.flags & indexUnique) != 0;
        info.required = (data.flags & indexRequired) != 0;
        info.ignoreNulls = (data.flags & indexIgnoreNulls) != 0;
        info.relation = def.use == IndexUse::Relation;
        info.seekable = m_ordered[def.data];
        m_indexes.push_back(std::move(info));
    }
    m_trees.clear();
    for (IndexData& data : m_def.indexData)
        m_trees.push_back(std::make_unique<Index>(m_pager, m_def.page, data));
    m_longValues.clear();
    for (const LongValueMaps& maps : m_def.longValues)
        m_longValues.push_back(std::make_unique<LongValues>(m_pager, maps));
    m_builder = std::make_unique<RowBuilder>(m_pager.layout(), m_def);
}

bool TableStore::known(const IndexData& data) const {
    return std::ranges::all_of(data.columns, [this](const IndexData::Part& part) {
        const ColumnDef& column = *m_def.columnOfNumber(part.column);
        return !column.isText() || (column.sortOrder == generalSort && column.sortVersion == 0);
    });
}

void TableStore::requireWritable() const {
    m_pager.requireWritable();
    if (!m_builder->placesDiffer()) throw Error::corrupt(m_def.page, 0, "columns lie over each other");
}

void TableStore::requireKnownOrder() const {
    if (!m_allOrdered)
        throw Error(ErrorKind::UnsupportedSort,
                    "The table '" + m_name +
                        "' is sorted by the rules of a language that is not known; "
                        "its records can be read, not added or deleted.");
}

/// The home slot of a row that lives, and its page.
Slot TableStore::homeOf(RowId id, View& page) {
    if (!m_ownedPages.contains(id.page)) failNoRow();
    page = m_pager.view(id.page);
    requireDataPage(page, m_def.page);
    const int count = slotCount(page, m_pager.layout());
    if (id.slot >= count) failNoRow();
    const Slot slot = slotAt(page, m_pager.layout(), id.slot, count);
    if (slot.deleted() || slot.isOverflow()) failNoRow();
    return slot;
}

TableStore::Body TableStore::bodyOf(RowId id, const Slot& home, const View& page) {
    if (!home.isPointer()) return {{id.page, id.slot}, false};
    const RowPointer target = RowPointer::unpack(page.part(home.start, home.length).u32(0));
    const View other = m_pager.view(target.page);
    requireDataPage(other, m_def.page);
    if (!slotAt(other, m_pager.layout(), target.row).isOverflow())
        page.fail(home.start, "a row is not where its pointer says");
    return {target, true};
}

TableStore::Body TableStore::locate(RowId id) {
    View page(0, {});
    const Slot home = homeOf(id, page);
    return bodyOf(id, home, page);
}

View TableStore::rowView(RowId id) {
    View page(0, {});
    const Slot home = homeOf(id, page);
    if (home.isPointer()) return bodyView(bodyOf(id, home, page));
    return page.part(home.start, home.length);
}

View TableStore::bodyView(const Body& body) {
    return rowAt(m_pager.view(body.at.page), m_pager.layout(), body.at.row);
}

bool TableStore::exists(RowId id) {
    const Layout& layout = m_pager.layout();
    if (!m_ownedPages.contains(id.page)) return false;
    const View page = m_pager.view(id.page);
    const int count = slotCount(page, layout);
    if (id.slot >= count) return false;
    const Slot slot = slotAt(page, layout, id.slot, count);
    return !slot.deleted() && !slot.isOverflow();
}

void TableStore::decode(const View& row, Row& into) {
    const StoredRow stored(row, m_pager.layout(), m_def);
    into.resize(m_def.columns.size());
    for (std::size_t i = 0; i < into.size(); ++i)
        decodeColumn(m_pager, m_def.columns[i], stored, into[i]);
}

std::size_t TableStore::longValueSize(const Row& row) const {
    std::size_t size = 0;
    for (const LongValueMaps& maps : m_def.longValues) {
        const ColumnDef* column = m_def.columnOfNumber(maps.column);
        if (column == nullptr) continue;
        const Value& value = row[static_cast<std::size_t>(column - m_def.columns.data())];
        if (const auto* text = std::get_if<std::string>(&value)) size += text->size();
        if (const auto* bytes = std::get_if<Bytes>(&value)) size += bytes->size();
    }
    return size;
}

void TableStore::addToKey(Bytes& key, std::size_t column, bool ascending, const Value& value) {
    const KeyColumn form{m_def.columns[column].type, ascending};
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr || text->size() > longestKept) return appendKey(key, form, value, m_pager.format());
    LastText& last = m_lastTexts[column];
    if (last.key.empty() || last.ascending != ascending || last.text != *text) {
        last.key.clear();
        appendKey(last.key, form, value, m_pager.format());
        last.text = *text;
        last.ascending = ascending;
    }
    putBytes(key, last.key);
}

void TableStore::keysOf(const Row& row, Keys& keys) {
    keys.resize(m_def.indexData.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const IndexData& data = m_def.indexData[i];
        Bytes& key = keys[i].bytes;
        key.clear();
        keys[i].there = m_ordered[i]; // where the order is not known, keys are left as they are
        if (!m_ordered[i]) continue;
        std::size_t nulls = 0;
        for (const IndexData::Part& part : data.columns) {
            const auto column =
                static_cast<std::size_t>(m_def.columnOfNumber(part.column) - m_def.columns.data());
            nulls += isNull(row[column]);
            addToKey(key, column, part.ascending, row[column]);
        }
        keys[i].there = nulls != data.columns.size() || (data.flags & indexIgnoreNulls) == 0;
    }
}

/// A key that was just sought and not found is mostly inserted next.
bool TableStore::contains(std::size_t tree, const Bytes& key) const {
    if (m_missingIn == tree && m_missingAt == m_changes && m_soughtKey == key) return false;
    return m_trees[tree]->contains(key);
}

/// Refuses keys that the indexes do not take; `old` are the keys that the row has now.
void TableStore::requireFreeKeys(const Keys& keys, const Keys& old) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const Bytes& key = keys[i].bytes;
        if (!keys[i].there || (i < old.size() && old[i].there && old[i].bytes == key)) continue;
        if (key.size() > Index::longestKey(m_pager.layout()))
            throw Error(ErrorKind::RowTooLong,
                        "The values are too long for an index of the table '" + m_name + "'.");
        if ((m_def.indexData[i].flags & indexUnique) == 0) continue;
        // Keys that are Null throughout, a single flag byte a column, may repeat. An empty Binary has no more
        // than its flag either.
        const bool allNull =
            key.size() == m_def.indexData[i].columns.size() && std::ranges::all_of(key, isNullFlag);
        if (!allNull && contains(i, key))
            throw Error(
                ErrorKind::DuplicateKey,
                "The changes would create duplicate values in an index or primary key of the table '" +
                    m_name + "'.");
    }
}

void TableStore::seek(int index, std::span<const Value> key, const std::function<bool(RowId)>& take) {
    const IndexInfo& info = m_indexes.at(static_cast<std::size_t>(index));
    if (!info.seekable)
        throw Error(ErrorKind::UnsupportedSort,
                    "The index '" + info.name + "' is sorted in a way that is not known.");
    const std::size_t data = m_def.indexes[static_cast<std::size_t>(index)].data;
    Bytes& bytes = m_soughtKey;
    bytes.clear();
    m_missingIn.reset();
    for (std::size_t i = 0; i < std::min(key.size(), info.columns.size()); ++i) {
        const auto position = static_cast<std::size_t>(info.columns[i].column);
        const ColumnDef& column = m_def.columns[position];
        // A text longer than the column has no row, but its key is well defined.
        if (column.type != ColumnType::Text)
            requireValue(column, key[i], m_pager.format());
        else if (!isNull(key[i]) && !std::holds_alternative<std::string>(key[i]))
            throw Error(ErrorKind::TypeMismatch,
                        "The value has another type than the field '" + column.name + "'.");
        addToKey(bytes, position, info.columns[i].ascending, key[i]);
    }
    const auto isEmpty = [](const Value& value) {
        const Bytes* binary = std::get_if<Bytes>(&value);
        return binary != nullptr && binary->empty();
    };
    const std::span<const Value> wanted = key.first(std::min(key.size(), info.columns.size()));
    const bool ambiguous = std::ranges::any_of(wanted, isEmpty);
    bool any = false;
    m_trees[data]->each(bytes, [&](RowPointer row) {
        any = true;
        const RowId id{row.page, row.row};
        return (ambiguous && !hasValues(id, info, wanted)) || take(id);
    });
    if (any) return;
    m_missingIn = data;
    m_missingAt = m_changes;
}

/// The row has the wanted values; asked where the key alone does not tell.
bool TableStore::hasValues(RowId id, const IndexInfo& info, std::span<const Value> wanted) {
    Row row;
    read(id, row);
    Bytes found, sought;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const auto position = static_cast<std::size_t>(info.columns[i].column);
        const KeyColumn column{m_def.columns[position].type, info.columns[i].ascending};
        found.clear();
        sought.clear();
        appendKey(found, column, row[position], m_pager.format());
        appendKey(sought, column, wanted[i], m_pager.format());
        if (found != sought) return false;
    }
    return true;
}

void TableStore::flush() {
    for (const auto& tree : m_trees)
        tree->settle();
    if (m_changes != 0 && !m_counted) count();
    m_def.saveCounters(m_pager);
}

std::uint32_t TableStore::countRows() {
    std::uint32_t rows = 0;
    for (std::uint32_t page = m_ownedPages.next(0); page != 0; page = m_ownedPages.next(page + 1)) {
        const View view = m_pager.view(page);
        requireDataPage(view, m_def.page);
        rows += homesOn(view, m_pager.layout());
    }
    return rows;
}

/// The count of a definition is a hint: other programs leave wrong ones behind. Where rows changed it is
/// written anew; pages that cannot be read leave it as it was.
void TableStore::count() {
    try {
        m_def.rowCount = countRows();
    } catch (const Error& error) {
        if (error.kind() != ErrorKind::Corrupt) throw;
        return;
    }
    m_counted = true;
}

void TableStore::verifyTrees() {
    for (const auto& tree : m_trees)
        tree->verify();
}

} // namespace jet
