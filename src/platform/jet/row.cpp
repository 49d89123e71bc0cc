#include "row.h"

#include "long_value.h"
#include "pager.h"
#include "text.h"

#include <algorithm>
#include <bit>

namespace jet {

namespace {

std::uint64_t wide(const View& field) {
    return std::uint64_t{field.u32(4)} << 32 | field.u32(0);
}

Guid readGuid(const View& field) {
    // Three little-endian numbers, then bytes in printed order.
    static constexpr std::array<std::size_t, 16> order{3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    Guid guid;
    for (std::size_t i = 0; i < order.size(); ++i)
        guid.bytes[i] = field.u8(order[i]);
    return guid;
}

Numeric readNumeric(const View& field) {
    Numeric result;
    result.negative = field.u8(0) != 0;
    for (std::size_t word = 0; word < 4; ++word)
        for (std::size_t i = 0; i < 4; ++i)
            result.magnitude[word * 4 + i] = field.u8(1 + word * 4 + 3 - i);
    return result;
}

/// The fields of fixed length that a type stores; 0 = as many bytes as the value has.
std::size_t storedBytes(ColumnType type) {
    switch (type) {
    case ColumnType::Byte:
        return 1;
    case ColumnType::Integer:
        return 2;
    case ColumnType::Long:
    case ColumnType::Single:
        return 4;
    case ColumnType::Currency:
    case ColumnType::Double:
    case ColumnType::DateTime:
        return 8;
    case ColumnType::Guid:
        return 16;
    case ColumnType::Numeric:
        return 17;
    default:
        return 0;
    }
}

[[noreturn]] void failType(const ColumnDef& column) {
    throw Error(ErrorKind::TypeMismatch, "The value has another type than the field '" + column.name + "'.");
}

template <typename T>
const T& as(const ColumnDef& column, const Value& value) {
    const T* found = std::get_if<T>(&value);
    if (found == nullptr) failType(column);
    return *found;
}

void put64(Bytes& out, std::uint64_t value) {
    put32(out, static_cast<std::uint32_t>(value));
    put32(out, static_cast<std::uint32_t>(value >> 32));
}

} // namespace

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

void decodeField(Pager& pager, const ColumnDef& column, const View& field, Value& into) {
    switch (column.type) {
    case ColumnType::Byte:
        into = field.u8(0);
        return;
    case ColumnType::Integer:
        into = static_cast<std::int16_t>(field.u16(0));
        return;
    case ColumnType::Long:
        into = static_cast<std::int32_t>(field.u32(0));
        return;
    case ColumnType::Currency:
        into = Currency{static_cast<std::int64_t>(wide(field))};
        return;
    case ColumnType::Single:
        into = std::bit_cast<float>(field.u32(0));
        return;
    case ColumnType::Double:
        into = std::bit_cast<double>(wide(field));
        return;
    case ColumnType::DateTime:
        into = DateTime{std::bit_cast<double>(wide(field))};
        return;
    case ColumnType::Guid:
        into = readGuid(field);
        return;
    case ColumnType::Numeric:
        into = readNumeric(field);
        return;
    case ColumnType::Text: {
        auto* text = std::get_if<std::string>(&into);
        if (text == nullptr) text = &into.emplace<std::string>();
        decodeText(field, pager.format(), *text);
        return;
    }
    case ColumnType::Memo: {
        Bytes data;
        readLongValue(pager, field, data);
        decodeText(View(field.page(), data), pager.format(), into.emplace<std::string>());
        return;
    }
    case ColumnType::Ole:
        readLongValue(pager, field, into.emplace<Bytes>());
        return;
    default:
        into = Bytes(field.bytes().begin(), field.bytes().end());
        return;
    }
}

void decodeColumn(Pager& pager, const ColumnDef& column, const StoredRow& row, Value& into) {
    const bool set = row.isSet(column);
    if (column.type == ColumnType::Boolean)
        into = set;
    else if (!set)
        into = Null{};
    else
        decodeField(pager, column, row.field(column), into);
}

void requireValue(const ColumnDef& column, const Value& value, Format format) {
    if (column.type == ColumnType::Boolean) {
        (void)as<bool>(column, value);
        return;
    }
    if (isNull(value)) return;
    std::size_t length = 0;
    switch (column.type) {
    case ColumnType::Byte:
        (void)as<std::uint8_t>(column, value);
        return;
    case ColumnType::Integer:
        (void)as<std::int16_t>(column, value);
        return;
    case ColumnType::Long:
        (void)as<std::int32_t>(column, value);
        return;
    case ColumnType::Currency:
        (void)as<Currency>(column, value);
        return;
    case ColumnType::Single:
        (void)as<float>(column, value);
        return;
    case ColumnType::Double:
        (void)as<double>(column, value);
        return;
    case ColumnType::DateTime:
        (void)as<DateTime>(column, value);
        return;
    case ColumnType::Guid:
        (void)as<Guid>(column, value);
        return;
    case ColumnType::Numeric:
        (void)as<Numeric>(column, value);
        return;
    case ColumnType::Memo:
        (void)as<std::string>(column, value);
        return;
    case ColumnType::Ole:
        (void)as<Bytes>(column, value);
        return;
    case ColumnType::Text: {
        const std::string& text = as<std::string>(column, value);
        // No character takes less than a byte, so most texts need no counting.
        length = text.size() * (format == Format::Jet4 ? 2 : 1);
        if (length > column.length) length = storedLength(text, format) * (format == Format::Jet4 ? 2 : 1);
        break;
    }
    default:
        length = as<Bytes>(column, value).size();
    }
    if (length > column.length)
        throw Error(ErrorKind::TextTooLong, "The value is too long for the field '" + column.name + "'.");
}

void encodeField(const ColumnDef& column, const Value& value, Format format, Bytes& out) {
    switch (column.type) {
    case ColumnType::Byte:
        put8(out, std::get<std::uint8_t>(value));
        return;
    case ColumnType::Integer:
        put16(out, static_cast<std::uint16_t>(std::get<std::int16_t>(value)));
        return;
    case ColumnType::Long:
        put32(out, static_cast<std::uint32_t>(std::get<std::int32_t>(value)));
        return;
    case ColumnType::Currency:
        put64(out, static_cast<std::uint64_t>(std::get<Currency>(value).tenThousandths));
        return;
    case ColumnType::Single:
        put32(out, std::bit_cast<std::uint32_t>(std::get<float>(value)));
        return;
    case ColumnType::Double:
        put64(out, std::bit_cast<std::uint64_t>(std::get<double>(value)));
        return;
    case ColumnType::DateTime:
        put64(out, std::bit_cast<std::uint64_t>(std::get<DateTime>(value).days));
        return;
    case ColumnType::Guid: {
        const auto& bytes = std::get<Guid>(value).bytes;
        for (std::size_t i : {3U, 2U, 1U, 0U, 5U, 4U, 7U, 6U})
            put8(out, bytes[i]);
        putBytes(out, ByteView(bytes).subspan(8));
        return;
    }
    case ColumnType::Numeric: {
        const Numeric& number = std::get<Numeric>(value);
        put8(out, number.negative ? 0x80 : 0);
        for (std::size_t word = 0; word < 4; ++word)
            for (std::size_t i = 0; i < 4; ++i)
                put8(out, number.magnitude[word * 4 + 3 - i]);
        return;
    }
    case ColumnType::Text: {
        const bool compress = !column.fixed() && (column.flags2 & columnCompressed) != 0;
        encodeText(std::get<std::string>(value), format, compress, out);
        return;
    }
    default:
        putBytes(out, std::get<Bytes>(value));
    }
}

Bytes longValueBytes(const ColumnDef& column, const Value& value, Format format) {
    if (const Bytes* bytes = std::get_if<Bytes>(&value)) return *bytes;
    Bytes result;
    encodeText(std::get<std::string>(value), format, (column.flags2 & columnCompressed) != 0, result);
    return result;
}

RowBuilder::RowBuilder(const Layout& layout, const TableDef& def)
    : m_layout(layout),
      m_columns(def.maxColumns),
      m_hasVariable(def.variableSlots != 0),
      m_variable(def.variableSlots, Place{nullptr, 0}),
      m_offsets(def.variableSlots + std::size_t{1}),
      m_mask((m_columns + 7) / 8) {
    for (std::size_t i = 0; i < def.columns.size(); ++i) {
        const ColumnDef& column = def.columns[i];
        if (column.type == ColumnType::Boolean) {
            m_booleans.push_back({&column, i});
        } else if (column.fixed()) {
            m_fixed.push_back({&column, i});
            const std::size_t length =
                storedBytes(column.type) != 0 ? storedBytes(column.type) : column.length;
            m_fixedBytes = std::max(m_fixedBytes, column.fixedOffset + length);
        } else {
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
    out.clear();
    if (m_layout.jet4())
        put16(out, m_columns);
    else
        put8(out, m_columns);
    const std::size_t head = out.size();
    for (const Place& place : m_booleans)
        if (std::get<bool>(row[place.position])) set(*place.column);
    // Fixed columns are written in any order: behind the others, then moved to their place.
    out.resize(head + m_fixedBytes);
    const std::size_t fixedEnd = out.size();
    for (const Place& place : m_fixed) {
        if (isNull(row[place.position])) continue;
        set(*place.column);
        encodeField(*place.column, row[place.position], m_layout.format, out);
        const auto from = out.begin() + static_cast<std::ptrdiff_t>(fixedEnd);
        std::copy(from, out.end(),
                  out.begin() + static_cast<std::ptrdiff_t>(head + place.column->fixedOffset));
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
        for (std::size_t i = m_offsets.size(); i-- > 0;)
            put16(out, m_offsets[i]);
        put16(out, count);
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
