#include "table_blocks.h"

namespace jet {

namespace {

constexpr std::uint32_t blockConstant = 1625;
constexpr std::uint32_t indexDataConstant = 1923;
constexpr std::uint16_t unusedColumn = 0xFFFF;
constexpr std::size_t codePage = 1252;
constexpr std::uint8_t noCascade = 4; ///< in indexes that are no relations
constexpr std::size_t absent = 0;     ///< of a field that the older format lacks; no block begins with it

/// Where the fields of the blocks lie.
struct BlockLayout {
    // Of a column, behind its type.
    std::size_t columnConstant, number, variableSlot, order, sortOrder, codePage, sortVersion, flags, flags2,
        fixedOffset, length;
    // Of index data; each part is a column's number and a byte for its direction.
    std::size_t dataConstant, parts, map, root, dataFlags;
    // Of an index.
    std::size_t indexConstant, indexNumber, data, relation, otherIndex, otherTable, cascadeUpdates,
        cascadeDeletes, use;
};

constexpr std::size_t partBytes = 3;

constexpr BlockLayout jet3Blocks{
    .columnConstant = absent,
    .number = 1,
    .variableSlot = 3,
    .order = 5,
    .sortOrder = 9,
    .codePage = 11,
    .sortVersion = absent,
    .flags = 13,
    .flags2 = absent,
    .fixedOffset = 14,
    .length = 16,
    .dataConstant = absent,
    .parts = 0,
    .map = 30,
    .root = 34,
    .dataFlags = 38,
    .indexConstant = absent,
    .indexNumber = 0,
    .data = 4,
    .relation = 8,
    .otherIndex = 9,
    .otherTable = 13,
    .cascadeUpdates = 17,
    .cascadeDeletes = 18,
    .use = 19,
};

constexpr BlockLayout jet4Blocks{
    .columnConstant = 1,
    .number = 5,
    .variableSlot = 7,
    .order = 9,
    .sortOrder = 11,
    .codePage = absent,
    .sortVersion = 14,
    .flags = 15,
    .flags2 = 16,
    .fixedOffset = 21,
    .length = 23,
    .dataConstant = 0,
    .parts = 4,
    .map = 34,
    .root = 38,
    .dataFlags = 46,
    .indexConstant = 0,
    .indexNumber = 4,
    .data = 8,
    .relation = 12,
    .otherIndex = 13,
    .otherTable = 17,
    .cascadeUpdates = 21,
    .cascadeDeletes = 22,
    .use = 23,
};

const BlockLayout& blocksOf(const Layout& layout) {
    return layout.jet4() ? jet4Blocks : jet3Blocks;
}

/// Appends a block of zeros to be filled; gone with the next one.
Edit newBlock(Bytes& out, std::size_t length) {
    out.resize(out.size() + length);
    return {0, ByteSpan(out).last(length)};
}

} // namespace

ColumnDef readColumnBlock(const View& block, const Layout& layout) {
    const BlockLayout& at = blocksOf(layout);
    ColumnDef column;
    column.type = static_cast<ColumnType>(block.u8(0));
    column.number = block.u16(at.number);
    column.variableSlot = block.u16(at.variableSlot);
    column.sortOrder = block.u16(at.sortOrder);
    column.precision = block.u8(at.sortOrder);
    column.scale = block.u8(at.sortOrder + 1);
    if (at.sortVersion != absent) column.sortVersion = block.u8(at.sortVersion);
    column.flags = block.u8(at.flags);
    if (at.flags2 != absent) column.flags2 = block.u8(at.flags2);
    column.fixedOffset = block.u16(at.fixedOffset);
    column.length = block.u16(at.length);
    return column;
}

void writeColumnBlock(Bytes& out, const ColumnDef& column, const Layout& layout) {
    const BlockLayout& at = blocksOf(layout);
    Edit block = newBlock(out, layout.columnBytes);
    block.set8(0, static_cast<std::uint8_t>(column.type));
    if (at.columnConstant != absent) block.set32(at.columnConstant, blockConstant);
    block.set16(at.number, column.number);
    block.set16(at.variableSlot, column.variableSlot);
    if ((column.flags & columnOfSystem) == 0) block.set16(at.order, column.number); // no meaning for storage
    if (column.type == ColumnType::Numeric) {
        block.set8(at.sortOrder, column.precision);
        block.set8(at.sortOrder + 1, column.scale);
    } else {
        block.set16(at.sortOrder, column.sortOrder);
    }
    if (at.sortVersion != absent) block.set8(at.sortVersion, column.sortVersion);
    if (at.codePage != absent) block.set16(at.codePage, codePage);
    block.set8(at.flags, column.flags);
    if (at.flags2 != absent) block.set8(at.flags2, column.flags2);
    block.set16(at.fixedOffset, column.fixedOffset);
    block.set16(at.length, column.length);
}

IndexData readIndexDataBlock(const View& block, const Layout& layout) {
    const BlockLayout& at = blocksOf(layout);
    IndexData data;
    for (std::size_t i = 0; i < mostKeyColumns; ++i) {
        const std::uint16_t column = block.u16(at.parts + partBytes * i);
        if (column == unusedColumn) continue;
        data.columns.push_back({column, block.u8(at.parts + partBytes * i + 2) != 0});
    }
    data.map = RowPointer::unpack(block.u32(at.map));
    data.root = block.u32(at.root);
    data.flags = block.u8(at.dataFlags);
    return data;
}

void writeIndexDataBlock(Bytes& out, const IndexData& data, const Layout& layout) {
    const BlockLayout& at = blocksOf(layout);
    Edit block = newBlock(out, layout.indexDataBytes);
    if (layout.jet4()) block.set32(at.dataConstant, indexDataConstant);
    for (std::size_t i = 0; i < mostKeyColumns; ++i) {
        const bool used = i < data.columns.size();
        block.set16(at.parts + partBytes * i, used ? data.columns[i].column : unusedColumn);
        block.set8(at.parts + partBytes * i + 2, used && data.columns[i].ascending ? 1 : 0);
    }
    block.set32(at.map, data.map.pack());
    block.set32(at.root, data.root);
    block.set8(at.dataFlags, data.flags);
}

LogicalIndex readIndexBlock(const View& block, const Layout& layout) {
    const BlockLayout& at = blocksOf(layout);
    LogicalIndex index;
    index.number = block.u32(at.indexNumber);
    index.data = block.u32(at.data);
    index.relation = block.u8(at.relation);
    index.otherIndex = block.u32(at.otherIndex);
    index.otherTable = block.u32(at.otherTable);
    index.use = static_cast<IndexUse>(block.u8(at.use));
    return index;
}

void writeIndexBlock(Bytes& out, const LogicalIndex& index, const Layout& layout) {
    const BlockLayout& at = blocksOf(layout);
    Edit block = newBlock(out, layout.indexBytes);
    if (layout.jet4()) block.set32(at.indexConstant, blockConstant);
    block.set32(at.indexNumber, index.number);
    block.set32(at.data, index.data);
    block.set8(at.relation, index.relation);
    block.set32(at.otherIndex, index.otherIndex);
    block.set32(at.otherTable, index.otherTable);
    block.set8(at.cascadeUpdates, noCascade);
    block.set8(at.cascadeDeletes, noCascade);
    block.set8(at.use, static_cast<std::uint8_t>(index.use));
}

} // namespace jet
