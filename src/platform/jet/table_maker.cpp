#include "table_maker.h"

#include "data_page.h"
#include "field.h"
#include "index_page.h"
#include "pager.h"
#include "row.h"
#include "text.h"
#include "usage_map.h"

#include <algorithm>

namespace jet {

namespace {

constexpr int longestText = 255;
constexpr std::size_t longestName = 64;
constexpr std::size_t mostIndexes = 32;

[[noreturn]] void refuse(const std::string& text) {
    throw Error(ErrorKind::InvalidDesign, text);
}

void requireName(const std::string& name) {
    const bool odd = name.empty() || name.front() == ' ' || name.back() == ' ' ||
                     storedLength(name, Format::Jet4) > longestName ||
                     name.find_first_of(".!`[]") != std::string::npos ||
                     std::ranges::any_of(name, [](char c) { return static_cast<unsigned char>(c) < 0x20; });
    if (odd) refuse("'" + name + "' is not a valid name.");
}

template <typename Named>
void requireDifferent(const std::vector<Named>& all) {
    for (std::size_t i = 0; i < all.size(); ++i)
        for (std::size_t k = 0; k < i; ++k)
            if (sameName(all[i].name, all[k].name)) refuse("The name '" + all[i].name + "' is used twice.");
}

int mostBytes(Format format) {
    return format == Format::Jet4 ? 510 : 255;
}

std::uint16_t lengthOf(const ColumnDesign& design, Format format) {
    switch (design.type) {
    case ColumnType::Boolean:
        return 1;
    case ColumnType::Text: {
        const int characters = design.size == 0 ? longestText : design.size;
        return static_cast<std::uint16_t>(format == Format::Jet4 ? 2 * characters : characters);
    }
    case ColumnType::Binary:
        return static_cast<std::uint16_t>(design.size == 0 ? mostBytes(format) : design.size);
    default:
        return static_cast<std::uint16_t>(storedBytes(design.type)); // 0 for long values
    }
}

bool variable(ColumnType type) {
    return type == ColumnType::Text || type == ColumnType::Binary || type == ColumnType::Memo ||
           type == ColumnType::Ole;
}

} // namespace

void requireColumnDesign(const ColumnDesign& design, Format format) {
    requireName(design.name);
    const auto number = static_cast<int>(design.type);
    if (number < 1 || (number > 12 && design.type != ColumnType::Guid && design.type != ColumnType::Numeric))
        refuse("The field '" + design.name + "' has a type that cannot be made.");
    if (design.type == ColumnType::Numeric && format == Format::Jet3)
        refuse("The field '" + design.name + "' is Decimal, which Jet 3 does not know.");
    if (design.type == ColumnType::Numeric &&
        (design.precision < 1 || design.precision > 28 || design.scale > design.precision))
        refuse("The field '" + design.name + "' has an impossible precision.");
    const int most = design.type == ColumnType::Binary ? mostBytes(format) : longestText;
    if (variable(design.type) && (design.size < 0 || design.size > most))
        refuse("The field '" + design.name + "' is too long.");
    if (design.autonumber && design.type != ColumnType::Long)
        refuse("The field '" + design.name + "' cannot be numbered automatically.");
}

void requireShortRecord(const Layout& layout, std::size_t columns, std::size_t fixedBytes,
                        std::size_t variableColumns) {
    if (shortestRow(layout, columns, fixedBytes, variableColumns) > layout.longestRow)
        refuse("The fields of the table are too long for a record.");
}

void requireDesign(const TableDesign& design, Format format) {
    requireName(design.name);
    if (design.columns.empty() || design.columns.size() > mostColumns)
        refuse("The table '" + design.name + "' has no fields, or too many.");
    std::size_t fixedBytes = 0;
    std::size_t variableColumns = 0;
    for (const ColumnDesign& column : design.columns) {
        requireColumnDesign(column, format);
        if (variable(column.type))
            ++variableColumns;
        else if (column.type != ColumnType::Boolean)
            fixedBytes += lengthOf(column, format);
    }
    requireShortRecord(layoutOf(format), design.columns.size(), fixedBytes, variableColumns);
    requireDifferent(design.columns);
    requireDifferent(design.indexes);
    if (std::ranges::count_if(design.columns, &ColumnDesign::autonumber) > 1)
        refuse("Only one field of a table can be numbered automatically.");
    if (design.indexes.size() > mostIndexes) refuse("The table '" + design.name + "' has too many indexes.");
    if (std::ranges::count(design.indexes, IndexKind::PrimaryKey, &IndexDesign::kind) > 1)
        refuse("The table '" + design.name + "' has two primary keys.");
    for (const IndexDesign& index : design.indexes) {
        requireName(index.name);
        if (index.columns.empty() || index.columns.size() > mostKeyColumns)
            refuse("The index '" + index.name + "' has no fields, or too many.");
        requireDifferent(index.columns);
        for (const IndexColumn& part : index.columns) {
            const auto column = std::ranges::find_if(
                design.columns, [&](const ColumnDesign& c) { return sameName(c.name, part.name); });
            if (column == design.columns.end())
                refuse("The index '" + index.name + "' has the unknown field '" + part.name + "'.");
            if (column->type == ColumnType::Memo || column->type == ColumnType::Ole)
                refuse("The field '" + part.name + "' cannot be in an index.");
        }
    }
}

ColumnDef columnDefOf(const ColumnDesign& design, Format format) {
    ColumnDef column;
    column.name = design.name;
    column.type = design.type;
    column.flags = columnAlways;
    if (!variable(design.type)) column.flags |= columnFixed;
    if (design.autonumber) column.flags |= columnAutonumber;
    const bool text = design.type == ColumnType::Text || design.type == ColumnType::Memo;
    if (text && design.compressed && format == Format::Jet4) column.flags2 = columnCompressed;
    column.precision = design.precision;
    column.scale = design.scale;
    column.length = lengthOf(design, format);
    return column;
}

TableDef tableDefOf(const TableDesign& design, Format format) {
    TableDef def;
    for (const ColumnDesign& column : design.columns)
        def.columns.push_back(columnDefOf(column, format));
    for (const IndexDesign& index : design.indexes) {
        IndexData data;
        for (const IndexColumn& part : index.columns) {
            const auto column = std::ranges::find_if(
                design.columns, [&](const ColumnDesign& c) { return sameName(c.name, part.name); });
            data.columns.push_back(
                {static_cast<std::uint16_t>(column - design.columns.begin()), part.ascending});
        }
        if (format == Format::Jet4) data.flags |= indexAlwaysJet4;
        if (index.kind != IndexKind::Plain) data.flags |= indexUnique;
        if (index.kind == IndexKind::PrimaryKey || index.required) data.flags |= indexRequired;
        if (index.ignoreNulls) data.flags |= indexIgnoreNulls;
        LogicalIndex logical;
        logical.name = index.name;
        logical.number = static_cast<std::uint32_t>(def.indexes.size());
        logical.data = logical.number;
        if (index.kind == IndexKind::PrimaryKey) logical.use = IndexUse::PrimaryKey;
        def.indexData.push_back(std::move(data));
        def.indexes.push_back(std::move(logical));
    }
    return def;
}

RowPointer newUsageMap(Pager& pager, std::uint32_t& page) {
    const Layout& layout = pager.layout();
    if (page == 0 || !hasRoom(pager.view(page), layout, layout.mapRow)) {
        page = pager.allocate();
        initDataPage(pager.edit(page), layout, usageMapOwner);
    }
    const std::uint8_t row = appendRow(pager.editRows(page), layout, emptyMapRow(layout));
    return {page, row};
}

void makeTable(Pager& pager, TableDef& def, std::uint32_t& mapPage) {
    const Layout& layout = pager.layout();
    if (def.page == 0) def.page = pager.allocate();
    def.ownedPages = newUsageMap(pager, mapPage);
    def.freeSpacePages = newUsageMap(pager, mapPage);
    std::uint16_t fixedOffset = 0;
    for (ColumnDef& column : def.columns) {
        column.number = def.maxColumns++;
        column.variableSlot = def.variableSlots;
        if (!column.fixed()) {
            ++def.variableSlots;
        } else if (column.type != ColumnType::Boolean) {
            column.fixedOffset = fixedOffset;
            fixedOffset = static_cast<std::uint16_t>(fixedOffset + column.length);
        }
        if (column.isLongValue()) {
            const RowPointer pages = newUsageMap(pager, mapPage);
            def.longValues.push_back({column.number, pages, newUsageMap(pager, mapPage)});
        }
    }
    for (IndexData& data : def.indexData) {
        data.map = newUsageMap(pager, mapPage);
        data.root = pager.allocate();
        initIndexPage(pager.edit(data.root), layout, def.page, true);
        UsageMap(pager, data.map).add(data.root);
    }
    def.create(pager);
}

} // namespace jet
