#include "field.h"

#include "long_value.h"
#include "pager.h"
#include "row.h"
#include "text.h"

#include <bit>

namespace jet {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; ///< U+FEFF in UTF-8

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
        decodeText(column.fixed() ? withoutPadding(field, pager.format()) : field, pager.format(), *text);
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
        const std::size_t start = out.size();
        std::string_view text = std::get<std::string>(value);
        encodeText(text, format, compress, out);
        if (!column.fixed() || out.size() - start <= column.length) return;
        // Its mark takes more than the place of the column has.
        out.resize(start);
        text.remove_prefix(byteOrderMark.size());
        encodeText(text, format, false, out);
        return;
    }
    default:
        putBytes(out, std::get<Bytes>(value));
    }
}

bool storeReal(const Value& value, ByteSpan to) {
    if (const auto* real = std::get_if<double>(&value))
        storeLittle(to.first(8), std::bit_cast<std::uint64_t>(*real));
    else if (const auto* single = std::get_if<float>(&value))
        storeLittle(to.first(4), std::bit_cast<std::uint32_t>(*single));
    else
        return false;
    return true;
}

Bytes longValueBytes(const ColumnDef& column, const Value& value, Format format) {
    if (const Bytes* bytes = std::get_if<Bytes>(&value)) return *bytes;
    Bytes result;
    encodeText(std::get<std::string>(value), format, (column.flags2 & columnCompressed) != 0, result);
    return result;
}

} // namespace jet
