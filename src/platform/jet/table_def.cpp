#include "table_def.h"

#include "pager.h"
#include "table_blocks.h"
#include "text.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::uint32_t headerBytes = 8; ///< of every page of a definition
constexpr std::uint32_t nextPageAt = 4;
constexpr std::uint32_t lengthAt = 8;
constexpr std::size_t longestDefinition = std::size_t{1} << 18;
constexpr std::uint32_t mostIndexes = 1000;
constexpr std::uint16_t endOfDefinition = 0xFFFF;
constexpr std::size_t longValueBytes = 10; ///< column number, two row pointers
constexpr std::uint16_t markJet3 = 0x4356; ///< "VC", where Jet 4 counts the free bytes

// Jet 4 only: what Access writes into every definition.
constexpr std::size_t headConstantAt = 0x0C;
constexpr std::uint32_t headConstant = 1625;
constexpr std::size_t autonumbersGoOnAt = 0x18;

/// Reads the string from its front; the offsets in messages count from the start of the definition.
class Reader {
  public:
    Reader(const View& view, std::size_t at, const Layout& layout)
        : m_view(view), m_at(at), m_layout(layout) {}

    View block(std::size_t length) {
        const View result = m_view.part(m_at, length);
        m_at += length;
        return result;
    }
    std::string name() {
        const std::size_t length = m_layout.jet4() ? m_view.u16(m_at) : m_view.u8(m_at);
        m_at += m_layout.jet4() ? 2 : 1;
        std::string result;
        decodeText(block(length), m_layout.format, result);
        return result;
    }
    [[nodiscard]] std::size_t at() const { return m_at; }
    void skip(std::size_t length) { m_at += length; }
    [[nodiscard]] const View& view() const { return m_view; }

  private:
    View m_view;
    std::size_t m_at;
    const Layout& m_layout;
};

void writeName(Bytes& out, const std::string& name, const Layout& layout) {
    Bytes text;
    encodeText(name, layout.format, false, text);
    if (layout.jet4())
        put16(out, text.size());
    else
        put8(out, text.size());
    putBytes(out, text);
}

void writeLongValue(Bytes& out, const LongValueMaps& maps) {
    put16(out, maps.column);
    put32(out, maps.pages.pack());
    put32(out, maps.freeSpace.pack());
}

void set16(Bytes& string, std::size_t at, std::size_t value) {
    Edit(0, string).set16(at, value);
}
void set32(Bytes& string, std::size_t at, std::uint32_t value) {
    Edit(0, string).set32(at, value);
}

} // namespace

TableDef TableDef::load(Pager& pager, std::uint32_t page) {
    TableDef def;
    def.page = page;
    def.readPages(pager);
    def.parse(pager.layout());
    return def;
}

void TableDef::readPages(Pager& pager) {
    const std::size_t pageSize = pager.layout().pageSize;
    std::size_t length = pageSize;
    for (std::uint32_t next = page; next != 0;) {
        const View view = pager.view(next);
        if (view.u8(0) != static_cast<std::uint8_t>(PageKind::TableDef))
            view.fail(0, "a table definition is expected");
        if (m_string.empty()) {
            length = view.u32(lengthAt);
            if (length < pager.layout().countersAt || length > longestDefinition)
                view.fail(lengthAt, "a table definition has an impossible length");
        }
        m_pages.push_back(next);
        putBytes(m_string, m_string.empty() ? view.bytes() : view.bytes(headerBytes, pageSize - headerBytes));
        next = view.u32(nextPageAt);
        if (m_string.size() >= length && next != 0)
            view.fail(nextPageAt, "a table definition goes on behind its end");
    }
    if (m_string.size() < length) View(page, m_string).fail(lengthAt, "a table definition is cut short");
    m_string.resize(length);
}

void TableDef::parse(const Layout& layout) {
    const View string(page, m_string);
    rowCount = string.u32(layout.rowCountAt);
    autonumber = static_cast<std::int32_t>(string.u32(layout.autonumberAt));
    kind = string.u8(layout.tableKindAt);
    maxColumns = string.u16(layout.maxColumnsAt);
    variableSlots = string.u16(layout.variableSlotsAt);
    const std::uint16_t columnCount = string.u16(layout.columnCountAt);
    const std::uint32_t indexCount = string.u32(layout.indexCountAt);
    const std::uint32_t dataCount = string.u32(layout.indexDataCountAt);
    if (columnCount > mostColumns || columnCount > maxColumns || maxColumns > mostColumns + 1)
        string.fail(layout.columnCountAt, "too many columns");
    if (variableSlots > maxColumns) string.fail(layout.variableSlotsAt, "too many variable columns");
    if (indexCount > mostIndexes || dataCount > mostIndexes)
        string.fail(layout.indexCountAt, "too many indexes");
    ownedPages = RowPointer::unpack(string.u32(layout.ownedPagesAt));
    freeSpacePages = RowPointer::unpack(string.u32(layout.freeSpacePagesAt));

    columns.clear();
    indexData.clear();
    indexes.clear();
    longValues.clear();
    Reader reader(string, layout.countersAt, layout);
    reader.skip(std::size_t{dataCount} * layout.counterBytes);
    for (int i = 0; i < columnCount; ++i) {
        const std::size_t at = reader.at();
        columns.push_back(readColumnBlock(reader.block(layout.columnBytes), layout));
        if (columns.back().number >= maxColumns) string.fail(at, "a column has an impossible number");
        if (!columns.back().fixed() && columns.back().variableSlot >= variableSlots)
            string.fail(at, "a column has an impossible place");
        for (std::size_t k = 0; k + 1 < columns.size(); ++k)
            if (columns[k].number == columns.back().number) string.fail(at, "two columns have one number");
    }
    m_columnBlocksEnd = reader.at();
    for (ColumnDef& column : columns)
        column.name = reader.name();
    m_columnNamesEnd = reader.at();
    for (std::uint32_t i = 0; i < dataCount; ++i) {
        const std::size_t at = reader.at();
        indexData.push_back(readIndexDataBlock(reader.block(layout.indexDataBytes), layout));
        indexData.back().entries = string.u32(countersAt(layout, i));
        indexData.back().keys = string.u32(countersAt(layout, i) + 4);
        for (const IndexData::Part& part : indexData.back().columns)
            if (columnOfNumber(part.column) == nullptr)
                string.fail(at, "an index has a column that is not there");
        if (indexData.back().columns.empty()) string.fail(at, "an index has no columns");
    }
    for (std::uint32_t i = 0; i < indexCount; ++i) {
        const std::size_t at = reader.at();
        indexes.push_back(readIndexBlock(reader.block(layout.indexBytes), layout));
        if (indexes.back().data >= dataCount) string.fail(at, "an index has no keys");
    }
    for (LogicalIndex& index : indexes)
        index.name = reader.name();
    while (string.u16(reader.at()) != endOfDefinition) {
        const View block = reader.block(longValueBytes);
        longValues.push_back(
            {block.u16(0), RowPointer::unpack(block.u32(2)), RowPointer::unpack(block.u32(6))});
    }
    m_longValuesEnd = reader.at();
    std::ranges::sort(columns, {}, &ColumnDef::number);
}

const ColumnDef* TableDef::columnOfNumber(std::uint16_t number) const {
    for (const ColumnDef& column : columns)
        if (column.number == number) return &column;
    return nullptr;
}

void TableDef::create(Pager& pager) {
    const Layout& layout = pager.layout();
    m_string.assign(layout.countersAt, 0);
    Edit head(page, m_string);
    if (layout.jet4()) {
        head.set32(headConstantAt, headConstant);
        head.set8(autonumbersGoOnAt, 1);
    }
    head.set32(layout.rowCountAt, rowCount);
    head.set32(layout.autonumberAt, static_cast<std::uint32_t>(autonumber));
    head.set8(layout.tableKindAt, kind);
    head.set16(layout.maxColumnsAt, maxColumns);
    head.set16(layout.variableSlotsAt, variableSlots);
    head.set16(layout.columnCountAt, columns.size());
    head.set32(layout.indexCountAt, static_cast<std::uint32_t>(indexes.size()));
    head.set32(layout.indexDataCountAt, static_cast<std::uint32_t>(indexData.size()));
    head.set32(layout.ownedPagesAt, ownedPages.pack());
    head.set32(layout.freeSpacePagesAt, freeSpacePages.pack());
    for (const IndexData& data : indexData) {
        put32(m_string, data.entries);
        put32(m_string, data.keys);
        if (layout.jet4()) put32(m_string, 0);
    }
    for (const ColumnDef& column : columns)
        writeColumnBlock(m_string, column, layout);
    for (const ColumnDef& column : columns)
        writeName(m_string, column.name, layout);
    for (const IndexData& data : indexData)
        writeIndexDataBlock(m_string, data, layout);
    for (const LogicalIndex& index : indexes)
        writeIndexBlock(m_string, index, layout);
    for (const LogicalIndex& index : indexes)
        writeName(m_string, index.name, layout);
    for (const LongValueMaps& maps : longValues)
        writeLongValue(m_string, maps);
    put16(m_string, endOfDefinition);
    m_pages.assign(1, page);
    parse(layout);
    store(pager);
}

void TableDef::addColumn(Pager& pager, ColumnDef column, const LongValueMaps* maps) {
    const Layout& layout = pager.layout();
    column.number = maxColumns;
    if (maps != nullptr) {
        Bytes block;
        LongValueMaps numbered = *maps;
        numbered.column = column.number;
        writeLongValue(block, numbered);
        m_string.insert(m_string.begin() + static_cast<std::ptrdiff_t>(m_longValuesEnd), block.begin(),
                        block.end());
    }
    Bytes name;
    writeName(name, column.name, layout);
    m_string.insert(m_string.begin() + static_cast<std::ptrdiff_t>(m_columnNamesEnd), name.begin(),
                    name.end());
    Bytes block;
    writeColumnBlock(block, column, layout);
    m_string.insert(m_string.begin() + static_cast<std::ptrdiff_t>(m_columnBlocksEnd), block.begin(),
                    block.end());
    set16(m_string, layout.maxColumnsAt, maxColumns + 1U);
    set16(m_string, layout.columnCountAt, columns.size() + 1);
    if (!column.fixed()) set16(m_string, layout.variableSlotsAt, variableSlots + 1U);
    const std::vector<IndexData> kept = indexData; // the counters of the string may be older
    const std::uint32_t rows = rowCount;
    const std::int32_t lastNumber = autonumber;
    parse(layout);
    rowCount = rows;
    autonumber = lastNumber;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        indexData[i].entries = kept[i].entries;
        indexData[i].keys = kept[i].keys;
    }
    store(pager);
    saveCounters(pager);
}

void TableDef::saveCounters(Pager& pager) {
    const Layout& layout = pager.layout();
    const Bytes before = m_string;
    set32(m_string, layout.rowCountAt, rowCount);
    set32(m_string, layout.autonumberAt, static_cast<std::uint32_t>(autonumber));
    for (std::size_t i = 0; i < indexData.size(); ++i) {
        set32(m_string, countersAt(layout, i), indexData[i].entries);
        set32(m_string, countersAt(layout, i) + 4, indexData[i].keys);
    }
    if (m_string != before) store(pager);
}

/// Cuts the string into pages; a longer one takes further pages.
void TableDef::store(Pager& pager) {
    const Layout& layout = pager.layout();
    set32(m_string, lengthAt, static_cast<std::uint32_t>(m_string.size()));
    const std::size_t perPage = layout.pageSize - headerBytes;
    const std::size_t count =
        std::max<std::size_t>(1, (m_string.size() - headerBytes + perPage - 1) / perPage);
    while (m_pages.size() < count)
        m_pages.push_back(pager.allocate());
    for (std::size_t i = 0; i < m_pages.size(); ++i) {
        Edit view = pager.edit(m_pages[i]);
        const std::size_t at = headerBytes + i * perPage;
        const std::size_t used = std::min(perPage, m_string.size() - std::min(at, m_string.size()));
        view.set8(0, static_cast<std::uint8_t>(PageKind::TableDef));
        view.set8(1, 1);
        // Jet 4: bytes left on the page, less eight; 0 on a full one.
        const std::size_t left = perPage - used;
        if (layout.jet4())
            view.set16(freeSpaceAt, left < headerBytes ? 0 : left - headerBytes);
        else
            view.set16(freeSpaceAt, markJet3);
        view.set32(nextPageAt, i + 1 < m_pages.size() ? m_pages[i + 1] : 0);
        if (used != 0) view.setBytes(headerBytes, ByteView(m_string).subspan(at, used));
        view.fill(headerBytes + used, left, 0);
    }
}

} // namespace jet
