#include "row.h"

#include "layout.h"

#include <algorithm>

namespace jet {

StoredRow::StoredRow(const View& row, const Layout& layout, const TableDef& def)
    : m_row(row), m_jet4(layout.jet4()), m_columns(m_jet4 ? row.u16(0) : row.u8(0)) {
    const std::size_t maskBytes = (m_columns + 7) / 8;
    const std::size_t head = m_jet4 ? 2 : 1;
    if (m_columns > def.maxColumns || head + maskBytes > row.size())
        row.fail(0, "a row has too many columns");
    m_maskAt = row.size() - maskBytes;
    if (def.variableSlots == 0) return;
    if (m_jet4) {
        m_variable = row.u16(m_maskAt - std::min<std::size_t>(m_maskAt, 2));
    } else {
        m_variable = row.u8(m_maskAt - 1);
        m_jumps = (row.size() - 1) / 256;
    }
    const std::size_t tables = m_jet4 ? 4 + 2 * m_variable : 2 + m_jumps + m_variable;
    if (m_variable > def.variableSlots || head + tables > m_maskAt)
        row.fail(0, "a row has too many variable columns");
}

/// Entry `entry` of the variable offsets; the last one is the end of the data.
std::size_t StoredRow::offset(std::size_t entry) const {
    if (m_jet4) return m_row.u16(m_maskAt - 4 - 2 * entry);
    // Jet 3 stores the low byte; the jump table tells at which entries the next 256 begin.
    std::size_t base = 0;
    for (std::size_t jump = 0; jump < m_jumps && m_row.u8(m_maskAt - 2 - jump) <= entry; ++jump)
        base += 256;
    return base + m_row.u8(m_maskAt - 2 - m_jumps - entry);
}

std::size_t StoredRow::fixedEnd() const {
    if (m_variable != 0) return offset(0);
    return m_maskAt;
}

bool StoredRow::isSet(const ColumnDef& column) const {
    if (column.number >= m_columns) return false;
    return (m_row.u8(m_maskAt + column.number / 8U) >> column.number % 8 & 1) != 0;
}

View StoredRow::field(const ColumnDef& column) const {
    const std::size_t head = m_jet4 ? 2 : 1;
    if (column.fixed()) {
        const std::size_t start = head + column.fixedOffset;
        const std::size_t length = storedBytes(column.type) != 0 ? storedBytes(column.type) : column.length;
        if (start + length > m_maskAt) m_row.fail(start, "a field lies outside its row");
        return m_row.part(start, length);
    }
    if (column.variableSlot >= m_variable) m_row.fail(0, "a row lacks a variable field");
    const std::size_t start = offset(column.variableSlot);
    const std::size_t end = offset(column.variableSlot + 1U);
    if (start < head || end < start || end > m_maskAt) m_row.fail(0, "a variable field lies outside its row");
    return m_row.part(start, end - start);
}

std::size_t shortestRow(const Layout& layout, std::size_t columns, std::size_t fixedBytes,
                        std::size_t variableColumns) {
    const std::size_t mask = (columns + 7) / 8;
    const std::size_t offsets = variableColumns == 0 ? 0 : variableColumns + 1;
    if (layout.jet4()) return 2 + fixedBytes + 2 * offsets + (offsets == 0 ? 0 : 2) + mask;
    const std::size_t plain = 1 + fixedBytes + offsets + (offsets == 0 ? 0 : 1) + mask;
    return offsets == 0 ? plain : plain + plain / 255; // the table of jumps counts itself
}

RowBuilder::RowBuilder(const Layout& layout, const TableDef& def)
    : m_layout(layout),
      m_columns(def.maxColumns),
      m_hasVariable(def.variableSlots != 0),
      m_variable(def.variableSlots, Place{nullptr, 0}),
      m_offsets(def.variableSlots + std::size_t{1}),
      m_mask((m_columns + 7) / 8) {
    std::vector<bool> numbers(m_columns);
    std::vector<bool> bytes;
    const auto take = [this](std::vector<bool>& taken, std::size_t at) {
        if (at >= taken.size()) taken.resize(at + 1);
        if (taken[at]) m_placesDiffer = false;
        taken[at] = true;
    };
    for (std::size_t i = 0; i < def.columns.size(); ++i) {
        const ColumnDef& column = def.columns[i];
        take(numbers, column.number);
        if (column.type == ColumnType::Boolean) {
            m_booleans.push_back({&column, i});
        } else if (column.fixed()) {
            m_fixed.push_back({&column, i});
            const std::size_t length =
                storedBytes(column.type) != 0 ? storedBytes(column.type) : column.length;
            m_fixedBytes = std::max(m_fixedBytes, column.fixedOffset + length);
            for (std::size_t at = column.fixedOffset; m_placesDiffer && at < column.fixedOffset + length;
                 ++at)
                take(bytes, at);
        } else {
            if (m_variable[column.variableSlot].column != nullptr) m_placesDiffer = false;
            m_variable[column.variableSlot] = {&column, i};
        }
    }
}

void RowBuilder::build(const Row& row, const std::vector<Bytes>& references, Bytes& out) {
    std::fill(m_mask.begin(), m_mask.end(), std::uint8_t{0});
    const auto set = [this](const ColumnDef& column) {
        std::uint8_t& byte = m_mask[column.number / 8U];
        byte = static_cast<std::uint8_t>(byte | 1U << column.number % 8);
    };
    const std::size_t head = m_layout.jet4() ? 2 : 1;
    const std::size_t fixedEnd = head + m_fixedBytes;
    out.assign(fixedEnd, 0);
    storeLittle(ByteSpan(out).first(head), m_columns);
    for (const Place& place : m_booleans)
        if (std::get<bool>(row[place.position])) set(*place.column);
    for (const Place& place : m_fixed) {
        const Value& value = row[place.position];
        if (isNull(value)) continue;
        set(*place.column);
        const std::size_t at = head + place.column->fixedOffset;
        if (storeReal(value, ByteSpan(out).subspan(at))) continue;
        // Written behind the others, then moved to its place.
        encodeField(*place.column, value, m_layout.format, out);
        const auto from = out.begin() + static_cast<std::ptrdiff_t>(fixedEnd);
        std::copy(from, out.end(), out.begin() + static_cast<std::ptrdiff_t>(at));
        out.resize(fixedEnd);
    }
    for (std::size_t slot = 0; slot < m_variable.size(); ++slot) {
        m_offsets[slot] = out.size();
        const Place& place = m_variable[slot];
        if (place.column == nullptr || isNull(row[place.position])) continue;
        set(*place.column);
        if (place.column->isLongValue())
            putBytes(out, references[place.position]);
        else
            encodeField(*place.column, row[place.position], m_layout.format, out);
    }
    m_offsets.back() = out.size();
    if (m_hasVariable) appendTables(out);
    putBytes(out, m_mask);
    if (out.size() > m_layout.longestRow) throw Error(ErrorKind::RowTooLong, "The record is too large.");
}

void RowBuilder::appendTables(Bytes& out) const {
    const std::size_t count = m_variable.size();
    if (m_layout.jet4()) {
        std::size_t at = out.size();
        out.resize(at + 2 * m_offsets.size() + 2);
        for (std::size_t i = m_offsets.size(); i-- > 0; at += 2)
            storeLittle(ByteSpan(out).subspan(at, 2), m_offsets[i]);
        storeLittle(ByteSpan(out).subspan(at, 2), count);
        return;
    }
    const std::size_t plain = out.size() + m_offsets.size() + 1 + m_mask.size();
    std::size_t jumps = 0;
    while ((plain + jumps - 1) / 256 != jumps)
        ++jumps;
    for (std::size_t i = m_offsets.size(); i-- > 0;)
        put8(out, m_offsets[i] & 0xFF);
    for (std::size_t jump = jumps; jump-- > 0;) {
        const auto first =
            std::ranges::find_if(m_offsets, [&](std::size_t at) { return at >= 256 * (jump + 1); });
        put8(out, first == m_offsets.end() ? 0xFF : static_cast<std::size_t>(first - m_offsets.begin()));
    }
    put8(out, count);
}

} // namespace jet
