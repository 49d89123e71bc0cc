#include "check_table.h"

#include "data_page.h"
#include "sort_key.h"

#include <algorithm>
#include <set>

namespace jet {

namespace {

constexpr std::uint32_t definitionHeader =
    8; ///< of every page of a definition but the first, where it counts
constexpr std::uint32_t lengthAt = 8;
constexpr std::uint32_t nextPageAt = 4;
constexpr std::size_t referenceBytes = 12;
constexpr std::uint32_t lengthBits = 0x3FFFFFFF;
constexpr std::uint32_t inlineKind = 0x80000000;
constexpr std::uint32_t singleKind = 0x40000000;

std::size_t fixedBytes(const ColumnDef& column) {
    return column.type == ColumnType::Boolean ? 0 : std::size_t{column.length};
}

bool knownOrder(const TableDef& def, const IndexData& index) {
    return std::ranges::all_of(index.columns, [&](const IndexData::Part& part) {
        const ColumnDef* column = def.columnOfNumber(part.column);
        return column == nullptr || !column->isText() ||
               (column->sortOrder == generalSort && column->sortVersion == 0);
    });
}

} // namespace

void TableCheck::run(const std::function<void(const Row&)>& see) {
    m_see = &see;
    m_expected.resize(m_def.indexData.size());
    m_faults.guarded(part("definition"), [&] {
        checkDefinitionPages();
        checkColumns();
        checkIndexBlocks();
    });
    collectPieces();
    for (std::uint32_t page : ownedPages())
        m_faults.guarded(part("data"), [&] { checkPage(page); });
    for (const auto& [home, body] : m_pointers) {
        const auto found = m_overflow.find(body.pack());
        if (found == m_overflow.end() || found->second) {
            m_faults.add(home, "points to no row of its own");
            continue;
        }
        found->second = true;
        m_faults.guarded(part("data"), [&, from = home, at = body] {
            checkRow(from, rowAt(m_pager.view(at.page), m_pager.layout(), at.row));
        });
    }
    checkLeftOvers();
    for (std::size_t i = 0; i < m_def.indexData.size(); ++i) {
        std::string name = "index " + std::to_string(i);
        for (const LogicalIndex& index : m_def.indexes)
            if (index.data == i) name = "index '" + index.name + "'";
        checkIndex(m_pager, m_ledger, m_faults, m_def, i, part(name), m_expected[i],
                   knownOrder(m_def, m_def.indexData[i]));
    }
}

/// Each page of the definition is filled before the next one begins, and says how much of it is free.
void TableCheck::checkDefinitionPages() {
    const Layout& layout = m_pager.layout();
    const std::uint32_t length = m_pager.view(m_def.page).u32(lengthAt);
    std::uint32_t carried = 0;
    for (std::size_t i = 0; i < m_def.pages().size(); ++i) {
        const std::uint32_t number = m_def.pages()[i];
        m_ledger.claim(number, part("the definition"));
        const View page = m_pager.view(number);
        const std::uint32_t head = i == 0 ? 0 : definitionHeader;
        const std::uint32_t here = std::min(length - carried, layout.pageSize - head);
        carried += here;
        const std::uint32_t next = i + 1 < m_def.pages().size() ? m_def.pages()[i + 1] : 0;
        if (page.u32(nextPageAt) != next) m_faults.add(number, "the definition goes on elsewhere");
        if (!layout.jet4()) continue;
        const int unused = static_cast<int>(layout.pageSize - head - here);
        const int said = static_cast<std::int16_t>(page.u16(freeSpaceAt));
        if (said != (next != 0 ? 0 : unused - static_cast<int>(definitionHeader)))
            m_faults.add(number, "wrong count of free bytes in a definition");
    }
    if (carried != length) m_faults.add(m_def.page, "the definition is longer than its pages");
}

void TableCheck::checkColumns() {
    std::set<std::uint16_t> numbers, slots;
    std::vector<std::pair<std::size_t, std::size_t>> fixed;
    for (const ColumnDef& column : m_def.columns) {
        const std::string name = "column '" + column.name + "' ";
        if (column.name.empty()) m_faults.add(m_def.page, "a column without a name");
        if (column.number >= m_def.maxColumns || !numbers.insert(column.number).second)
            m_faults.add(m_def.page, name + "has a number that is not its own");
        if (column.fixed())
            fixed.emplace_back(column.fixedOffset, fixedBytes(column));
        else if (column.variableSlot >= m_def.variableSlots || !slots.insert(column.variableSlot).second)
            m_faults.add(m_def.page, name + "has a place that is not its own");
    }
    std::erase_if(fixed, [](const auto& place) { return place.second == 0; });
    std::ranges::sort(fixed);
    for (std::size_t i = 1; i < fixed.size(); ++i)
        if (fixed[i - 1].first + fixed[i - 1].second > fixed[i].first)
            m_faults.add(m_def.page, "fixed columns lie over each other");
}

void TableCheck::checkIndexBlocks() {
    std::set<std::uint32_t> numbers, used;
    for (const LogicalIndex& index : m_def.indexes) {
        if (!numbers.insert(index.number).second) m_faults.add(m_def.page, "two indexes have one number");
        if (index.data >= m_def.indexData.size()) m_faults.add(m_def.page, "an index without data");
        used.insert(index.data);
    }
    for (std::size_t i = 0; i < m_def.indexData.size(); ++i) {
        if (!used.contains(static_cast<std::uint32_t>(i)))
            m_faults.add(m_def.page, "index data that no index uses");
        for (const IndexData::Part& column : m_def.indexData[i].columns)
            if (m_def.columnOfNumber(column.column) == nullptr)
                m_faults.add(m_def.page, "an index over a column that is not there");
    }
}

std::vector<std::uint32_t> TableCheck::ownedPages() {
    std::vector<std::uint32_t> owned = m_ledger.readMap(m_def.ownedPages, part("the data"));
    std::erase_if(owned, [&](std::uint32_t page) { return !m_ledger.claim(page, part("the data")); });
    for (std::uint32_t page : m_ledger.readMap(m_def.freeSpacePages, part("the pages with free space")))
        if (!std::ranges::binary_search(owned, page))
            m_faults.add(page, "has free space for '" + m_name + "', but is not its page");
    return owned;
}

void TableCheck::collectPieces() {
    const Layout& layout = m_pager.layout();
    for (const LongValueMaps& maps : m_def.longValues) {
        Pieces& pieces = m_pieces[maps.column];
        const std::string user = part("long values");
        const std::vector<std::uint32_t> pages = m_ledger.readMap(maps.pages, user);
        for (std::uint32_t number : pages) {
            if (!m_ledger.claim(number, user)) continue;
            m_faults.guarded(user, [&] {
                const View page = m_pager.view(number);
                if (!checkSlots(page, layout, longValueOwner, m_faults)) return;
                for (int i = 0; i < slotCount(page, layout); ++i) {
                    const Slot slot = slotAt(page, layout, i);
                    const RowPointer piece{number, static_cast<std::uint8_t>(i)};
                    if (slot.deleted()) continue;
                    if ((slot.flags & slotFlags) != 0) m_faults.add(piece, "a long value with flags");
                    pieces[piece.pack()] = false;
                }
            });
        }
        if (maps.freeSpace.none()) continue;
        for (std::uint32_t page : m_ledger.readMap(maps.freeSpace, user))
            if (!std::ranges::binary_search(pages, page))
                m_faults.add(page, "has free space for long values, but is no page of theirs");
    }
    for (const ColumnDef& column : m_def.columns)
        if (column.isLongValue() && !m_pieces.contains(column.number))
            m_faults.add(m_def.page, "column '" + column.name + "' has no maps for its long values");
}

void TableCheck::checkPage(std::uint32_t number) {
    const Layout& layout = m_pager.layout();
    const View page = m_pager.view(number);
    if (!checkSlots(page, layout, m_def.page, m_faults)) return;
    for (int i = 0; i < slotCount(page, layout); ++i) {
        const RowPointer home{number, static_cast<std::uint8_t>(i)};
        const Slot slot = slotAt(page, layout, i);
        if (slot.deleted()) continue;
        if (slot.isOverflow()) {
            m_overflow[home.pack()] = false;
        } else if (slot.isPointer()) {
            if (slot.length < 4)
                m_faults.add(home, "too short for a pointer");
            else
                m_pointers.emplace_back(home, RowPointer::unpack(rowAt(page, layout, i).u32(0)));
        } else {
            m_faults.guarded(part("row " + std::to_string(i)),
                             [&] { checkRow(home, rowAt(page, layout, i)); });
        }
    }
}

void TableCheck::checkRow(RowPointer home, const View& body) {
    ++m_rows;
    const StoredRow stored(body, m_pager.layout(), m_def);
    Row row(m_def.columns.size());
    const std::size_t head = m_pager.layout().jet4() ? 2 : 1;
    std::size_t fixedEnd = head;
    bool hasVariable = false;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const ColumnDef& column = m_def.columns[i];
        const bool present = column.number < stored.columnCount();
        if (present && !column.fixed()) hasVariable = true;
        if (present && column.fixed() && fixedBytes(column) > 0)
            fixedEnd = std::max(fixedEnd, head + column.fixedOffset + fixedBytes(column));
        if (column.isLongValue() && stored.isSet(column)) checkReference(home, column, stored.field(column));
        decodeColumn(m_pager, column, stored, row[i]);
    }
    const std::size_t mask = (stored.columnCount() + 7) / 8;
    if (m_def.variableSlots > 0 && !hasVariable && body.size() == fixedEnd + mask)
        m_faults.add(home, "the row has no room for variable columns");
    expectEntries(home, row);
    (*m_see)(row);
}

bool TableCheck::takePiece(RowPointer home, Pieces& pieces, RowPointer piece) {
    const auto found = pieces.find(piece.pack());
    if (found == pieces.end()) {
        m_faults.add(home, "a long value lies on no page of its column");
        return false;
    }
    if (found->second) {
        m_faults.add(piece, "a long value of two rows");
        return false;
    }
    found->second = true;
    return true;
}

void TableCheck::checkReference(RowPointer home, const ColumnDef& column, const View& reference) {
    Pieces& pieces = m_pieces[column.number];
    const std::uint32_t length = reference.u32(0) & lengthBits;
    const std::uint32_t kind = reference.u32(0) & ~lengthBits;
    RowPointer next = RowPointer::unpack(reference.u32(4));
    if (kind == inlineKind) {
        if (reference.size() != referenceBytes + length)
            m_faults.add(home, "a long value has another length");
        return;
    }
    if (reference.size() != referenceBytes) m_faults.add(home, "a long value has bytes in the row as well");
    std::size_t found = 0;
    const std::size_t head = kind == singleKind ? 0 : 4;
    if (kind != singleKind && kind != 0) m_faults.add(home, "a long value of an unknown kind");
    while (!next.none() && takePiece(home, pieces, next)) {
        const View piece = rowAt(m_pager.view(next.page), m_pager.layout(), next.row);
        if (piece.size() < head) break;
        found += piece.size() - head;
        next = head == 0 ? RowPointer{} : RowPointer::unpack(piece.u32(0));
    }
    if (found != length || !next.none()) m_faults.add(home, "a long value is not whole");
}

void TableCheck::expectEntries(RowPointer home, const Row& row) {
    for (std::size_t i = 0; i < m_def.indexData.size(); ++i) {
        const IndexData& index = m_def.indexData[i];
        ExpectedEntry entry{{}, true};
        bool anyNull = false;
        for (const IndexData::Part& key : index.columns) {
            const ColumnDef* column = m_def.columnOfNumber(key.column);
            if (column == nullptr) return;
            const Value& value = row[static_cast<std::size_t>(column - m_def.columns.data())];
            anyNull = anyNull || isNull(value);
            entry.allNull = entry.allNull && isNull(value);
            appendKey(entry.bytes, {column->type, key.ascending}, value, m_pager.format());
        }
        if (anyNull && (index.flags & indexRequired) != 0)
            m_faults.add(home, "Null in a key that refuses it");
        if (entry.allNull && (index.flags & indexIgnoreNulls) != 0) continue;
        for (std::uint32_t shift : {16U, 8U, 0U})
            put8(entry.bytes, home.page >> shift & 0xFF);
        put8(entry.bytes, home.row);
        m_expected[i].push_back(std::move(entry));
    }
}

void TableCheck::checkLeftOvers() {
    for (const auto& [packed, referred] : m_overflow)
        if (!referred) m_faults.add(RowPointer::unpack(packed), "the body of a row that is nowhere");
    for (const auto& [column, pieces] : m_pieces)
        for (const auto& [packed, referred] : pieces)
            if (!referred) m_faults.add(RowPointer::unpack(packed), "a long value that no row has");
    if (m_rows != m_def.rowCount)
        m_faults.addOrNote(m_def.page, part("row count") + " is " + std::to_string(m_def.rowCount) +
                                           " instead of " + std::to_string(m_rows));
}

} // namespace jet
