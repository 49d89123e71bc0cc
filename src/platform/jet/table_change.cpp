#include "data_page.h"
#include "pager.h"
#include "table_maker.h"
#include "table_store.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::uint32_t pointerBytes = 4;

/// A page with less free is not worth trying.
std::uint32_t littleSpace(const Layout& layout) {
    return layout.pageSize / 20;
}

} // namespace

void TableStore::addKey(std::size_t tree, ByteView key, RowPointer row) {
    IndexData& data = m_def.indexData[tree];
    const bool fresh = (data.flags & indexUnique) != 0 || !m_trees[tree]->contains(key);
    m_trees[tree]->insert(key, row);
    ++data.entries;
    data.keys += fresh;
}

void TableStore::removeKey(std::size_t tree, ByteView key, RowPointer row) {
    IndexData& data = m_def.indexData[tree];
    m_trees[tree]->remove(key, row);
    data.entries -= data.entries != 0;
    if (data.keys != 0 && !m_trees[tree]->contains(key)) --data.keys;
}

void TableStore::changeKeys(const Keys& old, const Keys& fresh, RowPointer row) {
    for (std::size_t i = 0; i < m_trees.size(); ++i) {
        const bool had = i < old.size() && old[i].there;
        const bool has = i < fresh.size() && fresh[i].there;
        if (had && has && old[i].bytes == fresh[i].bytes) continue;
        if (had) removeKey(i, old[i].bytes, row);
        if (has) addKey(i, fresh[i].bytes, row);
    }
}

LongValues* TableStore::longValues(std::uint16_t column) {
    for (std::size_t i = 0; i < m_longValues.size(); ++i)
        if (m_def.longValues[i].column == column) return m_longValues[i].get();
    throw Error::corrupt(m_def.page, 0, "a long value column has no pages");
}

/// The stored reference to a long value that an update leaves as it is; nothing for any other.
std::optional<View> TableStore::keptReference(std::size_t column, const Row& row, const Row* old,
                                              const StoredRow* stored) const {
    const ColumnDef& def = m_def.columns[column];
    if (stored == nullptr || !stored->isSet(def) || row[column] != (*old)[column]) return std::nullopt;
    return stored->field(def);
}

/// Checks the values and the length of the row before anything is touched.
void TableStore::buildProbe(const Row& row, const Row* old, const StoredRow* stored) {
    if (row.size() != m_def.columns.size())
        throw Error(ErrorKind::TypeMismatch,
                    "The row has another number of values than the table has fields.");
    std::vector<Bytes> references(m_longValues.empty() ? 0 : row.size());
    for (std::size_t i = 0; i < row.size(); ++i) {
        const ColumnDef& column = m_def.columns[i];
        requireValue(column, row[i], m_pager.format());
        if (!column.isLongValue() || isNull(row[i])) continue;
        (void)longValues(column.number);
        if (const auto kept = keptReference(i, row, old, stored))
            references[i].assign(kept->bytes().begin(), kept->bytes().end());
        else
            references[i] = placeholderReference(longValueBytes(column, row[i], m_pager.format()).size());
    }
    m_builder->build(row, references, m_row);
    for (const IndexData& data : m_def.indexData) {
        if ((data.flags & indexRequired) == 0) continue;
        for (const IndexData::Part& part : data.columns) {
            const auto position =
                static_cast<std::size_t>(m_def.columnOfNumber(part.column) - m_def.columns.data());
            if (isNull(row[position]))
                throw Error(ErrorKind::NullKey, "Index or primary key cannot contain a Null value.");
        }
    }
}

/// The references to the row's long values; those that did not change keep their pieces.
std::vector<Bytes> TableStore::storeLongValues(const Row& row, const Row* old, const StoredRow* stored) {
    std::vector<Bytes> references(row.size());
    for (std::size_t i = 0; i < row.size(); ++i) {
        const ColumnDef& column = m_def.columns[i];
        if (!column.isLongValue()) continue;
        if (const auto kept = keptReference(i, row, old, stored)) {
            references[i].assign(kept->bytes().begin(), kept->bytes().end());
            continue;
        }
        if (stored != nullptr && stored->isSet(column))
            longValues(column.number)->release(stored->field(column));
        if (!isNull(row[i]))
            references[i] =
                longValues(column.number)->store(longValueBytes(column, row[i], m_pager.format()));
    }
    return references;
}

void TableStore::releaseLongValues(const StoredRow& stored) {
    for (const ColumnDef& column : m_def.columns)
        if (column.isLongValue() && stored.isSet(column))
            longValues(column.number)->release(stored.field(column));
}

/// A page with room for a row of that length. Rows of a table without an index are only ever added behind the
/// last one, so that reading the pages in order gives them in the order in which they were written.
std::uint32_t TableStore::pageFor(std::size_t length) {
    constexpr int mostTries = 4;
    const Layout& layout = m_pager.layout();
    const bool ordered = m_def.indexData.empty();
    const std::uint32_t last = m_ownedPages.last();
    std::uint32_t page = ordered ? last : m_freeSpacePages.next(0);
    for (int tries = 0; page != 0 && tries < mostTries; ++tries) {
        const View view = m_pager.view(page);
        requireDataPage(view, m_def.page);
        if (!m_ownedPages.contains(page)) view.fail(ownerAt, "a page with free space is not in its table");
        if (hasRoom(view, layout, length)) return page;
        if (freeSpace(view, layout) < layout.pageSize / 4 || slotCount(view, layout) >= mostSlots)
            m_freeSpacePages.remove(page);
        page = ordered ? 0 : m_freeSpacePages.next(page + 1);
    }
    page = m_pager.allocate(ordered ? last + 1 : 0);
    initDataPage(m_pager.edit(page), layout, m_def.page);
    m_ownedPages.add(page);
    m_freeSpacePages.add(page);
    return page;
}

RowPointer TableStore::place(ByteView bytes, std::uint16_t flags) {
    const std::uint32_t page = pageFor(bytes.size());
    const std::uint8_t slot = appendRow(m_pager.editRows(page), m_pager.layout(), bytes, flags);
    noteSpace(page);
    return {page, slot};
}

/// Keeps the map of pages with free space in step.
void TableStore::noteSpace(std::uint32_t page) {
    const View view = m_pager.view(page);
    const bool worth = freeSpace(view, m_pager.layout()) >= littleSpace(m_pager.layout()) &&
                       slotCount(view, m_pager.layout()) < mostSlots;
    if (worth)
        m_freeSpacePages.add(page);
    else
        m_freeSpacePages.remove(page);
}

void TableStore::noteAutonumber(const Row& row) {
    if (!m_numbered) return;
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        if (m_columns[i].autonumber)
            if (const auto* number = std::get_if<std::int32_t>(&row[i]))
                m_def.autonumber = std::max(m_def.autonumber, *number);
}

RowId TableStore::insert(const Row& given) {
    requireWritable();
    requireKnownOrder();
    Row filled;
    const Row* row = &given;
    if (m_numbered && given.size() == m_columns.size() && isNull(given[*m_numbered])) {
        filled = given;
        filled[*m_numbered] = nextAutonumber();
        row = &filled;
    }
    buildProbe(*row);
    keysOf(*row, m_keys);
    requireFreeKeys(m_keys, {});
    ChangeGuard guard(m_pager);
    if (!m_longValues.empty()) m_builder->build(*row, storeLongValues(*row, nullptr, nullptr), m_row);
    const RowPointer at = place(m_row, 0);
    changeKeys({}, m_keys, at);
    ++m_def.rowCount;
    ++m_changes;
    noteAutonumber(*row);
    guard.done();
    return {at.page, at.row};
}

/// An index whose order is not known keeps its keys: the columns in it must not change.
void TableStore::requireKeptKeys(const Row& row, const Row& old) const {
    for (std::size_t i = 0; i < m_ordered.size(); ++i) {
        if (m_ordered[i]) continue;
        for (const IndexData::Part& part : m_def.indexData[i].columns) {
            const auto position =
                static_cast<std::size_t>(m_def.columnOfNumber(part.column) - m_def.columns.data());
            if (row[position] != old[position]) requireKnownOrder();
        }
    }
}

void TableStore::update(RowId id, const Row& row) {
    requireWritable();
    const Body body = locate(id);
    Row old;
    read(id, old);
    const StoredRow stored(bodyView(body), m_pager.layout(), m_def);
    buildProbe(row, &old, &stored);
    requireKeptKeys(row, old);
    Keys oldKeys, keys;
    keysOf(old, oldKeys);
    keysOf(row, keys);
    requireFreeKeys(keys, oldKeys);
    ChangeGuard guard(m_pager);
    // Storing long values does not move the stored row; what follows may.
    if (!m_longValues.empty()) m_builder->build(row, storeLongValues(row, &old, &stored), m_row);
    replaceBody(id, body, m_row);
    changeKeys(oldKeys, keys, {id.page, id.slot});
    ++m_changes;
    noteAutonumber(row);
    guard.done();
}

/// Writes the row in its place, or elsewhere when the page has no room; its home stays.
void TableStore::replaceBody(RowId id, const Body& body, ByteView bytes) {
    const Layout& layout = m_pager.layout();
    RowEdit page = m_pager.editRows(body.at.page);
    const Slot slot = slotAt(page, layout, body.at.row);
    if (bytes.size() <= slot.length + freeSpace(page, layout)) {
        const std::uint32_t start = bytes.size() == slot.length
                                        ? slot.start
                                        : resizeRow(page, layout, body.at.row, bytes.size(), slot.flags);
        page.setBytes(start, bytes);
        noteSpace(body.at.page);
        return;
    }
    const RowPointer moved = place(bytes, overflowRow);
    if (body.overflow) dropSlot(body.at);
    // A row of Yes/No columns alone is shorter than the pointer that it leaves.
    if (!body.overflow && slot.length + freeSpace(page, layout) < pointerBytes) moveLongestRow(id.page);
    leavePointer({id.page, id.slot}, moved);
}

void TableStore::leavePointer(RowPointer home, RowPointer moved) {
    RowEdit page = m_pager.editRows(home.page);
    const std::uint32_t start = resizeRow(page, m_pager.layout(), home.row, pointerBytes, pointerRow);
    page.set32(start, moved.pack());
    noteSpace(home.page);
}

/// Makes room on a page that is full.
void TableStore::moveLongestRow(std::uint32_t page) {
    const View view = m_pager.view(page);
    const Layout& layout = m_pager.layout();
    std::uint32_t longest = pointerBytes;
    std::uint8_t victim = 0;
    for (int i = 0; i < slotCount(view, layout); ++i)
        if (const Slot slot = slotAt(view, layout, i); slot.flags == 0 && slot.length > longest) {
            longest = slot.length;
            victim = static_cast<std::uint8_t>(i);
        }
    if (longest == pointerBytes) view.fail(freeSpaceAt, "no room for a row");
    const ByteView row = rowAt(view, layout, victim).bytes();
    leavePointer({page, victim}, place(Bytes(row.begin(), row.end()), overflowRow));
}

/// Deletes what a slot holds; a page on which nothing is left is given back.
void TableStore::dropSlot(RowPointer at) {
    const RowEdit page = m_pager.editRows(at.page);
    eraseRow(page, m_pager.layout(), at.row);
    if (!isEmptyPage(page, m_pager.layout())) {
        noteSpace(at.page);
        return;
    }
    m_ownedPages.remove(at.page);
    m_freeSpacePages.remove(at.page);
    m_pager.release(at.page);
}

void TableStore::erase(RowId id) {
    requireWritable();
    requireKnownOrder();
    const Body body = locate(id);
    Keys keys;
    if (!m_trees.empty()) {
        Row row;
        read(id, row);
        keysOf(row, keys);
    }
    ChangeGuard guard(m_pager);
    changeKeys(keys, {}, {id.page, id.slot});
    releaseLongValues(StoredRow(bodyView(body), m_pager.layout(), m_def));
    if (body.overflow) dropSlot(body.at);
    dropSlot({id.page, id.slot});
    m_def.rowCount -= m_def.rowCount != 0;
    ++m_changes;
    guard.done();
}

void TableStore::clear() {
    requireWritable();
    requireKnownOrder();
    ChangeGuard guard(m_pager);
    for (std::uint32_t page : m_ownedPages.pages()) {
        requireDataPage(m_pager.view(page), m_def.page);
        m_pager.release(page);
    }
    m_ownedPages.clear();
    m_freeSpacePages.clear();
    for (const auto& values : m_longValues)
        values->clear();
    for (const auto& tree : m_trees)
        tree->clear();
    m_def.rowCount = 0;
    ++m_changes;
    m_counted = true;
    guard.done();
}

void TableStore::findPlace(ColumnDef& column) {
    const Layout& layout = m_pager.layout();
    std::size_t end = 0;
    for (const ColumnDef& other : m_def.columns)
        if (other.fixed() && other.type != ColumnType::Boolean)
            end = std::max<std::size_t>(end, other.fixedOffset + other.length);
    // Bytes of deleted columns may lie behind those of the others.
    const bool deleted = m_def.maxColumns > m_def.columns.size();
    const std::size_t head = layout.jet4() ? 2 : 1;
    for (Cursor cursor(*this); deleted && cursor.next();) {
        const StoredRow stored(rowView(cursor.id()), layout, m_def);
        if (stored.columnCount() == m_def.maxColumns) end = std::max(end, stored.fixedEnd() - head);
    }
    std::size_t variableColumns = m_def.variableSlots;
    if (!column.fixed()) {
        column.variableSlot = m_def.variableSlots;
        ++variableColumns;
    } else if (column.type != ColumnType::Boolean) {
        column.fixedOffset = static_cast<std::uint16_t>(std::min<std::size_t>(end, layout.longestRow));
        end += column.length;
    }
    requireShortRecord(layout, m_def.maxColumns + std::size_t{1}, end, variableColumns);
}

void TableStore::addColumn(ColumnDef column, const LongValueMaps* maps) {
    flush();
    // Rows without a variable part would be misread once the table has a variable column.
    std::vector<std::pair<RowId, Row>> rows;
    if (m_def.variableSlots == 0 && !column.fixed())
        for (Cursor cursor(*this); cursor.next();)
            rows.emplace_back(cursor.id(), cursor.row());
    m_def.addColumn(m_pager, std::move(column), maps);
    describe();
    for (auto& [id, row] : rows) {
        row.emplace_back();
        m_builder->build(row, std::vector<Bytes>(row.size()), m_row);
        replaceBody(id, locate(id), m_row);
    }
    m_changes += !rows.empty();
}

} // namespace jet
