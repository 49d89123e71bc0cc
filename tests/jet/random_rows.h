#pragma once

#include "engine_fixture.h"

namespace jet {

/// A value of the column's type that differs from row to row.
inline Value randomValue(const Column& column, Random& random) {
    const auto pick = [&random](unsigned below) { return random() % below; };
    if (column.type != ColumnType::Boolean && pick(6) == 0) return Null{};
    const auto text = [&](std::size_t most) {
        static const std::vector<std::string> parts{"a", "Z", "-", "'",      " ",    "7",
                                                    "é", "ß", "Ø", "01-250", "Ünder"};
        std::string result;
        for (std::size_t i = pick(static_cast<unsigned>(most) + 1); i > 5; i -= std::min<std::size_t>(i, 6))
            result += parts[pick(static_cast<unsigned>(parts.size()))];
        return result;
    };
    switch (column.type) {
    case ColumnType::Boolean:
        return pick(2) == 0;
    case ColumnType::Byte:
        return static_cast<std::uint8_t>(pick(256));
    case ColumnType::Integer:
        return static_cast<std::int16_t>(random());
    case ColumnType::Long:
        return static_cast<std::int32_t>(random());
    case ColumnType::Currency:
        return Currency{static_cast<std::int64_t>(random()) - (1 << 30)};
    case ColumnType::Single:
        return static_cast<float>(pick(100000)) / 8 - 5000;
    case ColumnType::Double:
        return static_cast<double>(pick(100000)) / 7 - 5000;
    case ColumnType::DateTime:
        return DateTime{static_cast<double>(pick(100000)) / 3};
    case ColumnType::Text:
        return text(std::min<std::size_t>(static_cast<std::size_t>(column.size), 60));
    case ColumnType::Memo:
        return text(pick(20) == 0 ? 12000 : 300);
    case ColumnType::Binary:
        return Bytes(pick(static_cast<unsigned>(column.size) + 1), 0x5A);
    case ColumnType::FixedBinary:
        return Bytes(static_cast<std::size_t>(column.size), 0x5B);
    case ColumnType::Ole:
        return Bytes(pick(pick(20) == 0 ? 15000 : 200), 0x5C);
    case ColumnType::Guid: {
        Guid guid;
        for (std::uint8_t& byte : guid.bytes)
            byte = static_cast<std::uint8_t>(random());
        return guid;
    }
    case ColumnType::Numeric: {
        Numeric number;
        number.negative = pick(2) == 0;
        number.magnitude[15] = static_cast<std::uint8_t>(1 + pick(200));
        number.magnitude[12] = static_cast<std::uint8_t>(pick(200));
        return number;
    }
    }
    return Null{};
}

inline Row randomRow(const Table& table, Random& random) {
    Row row;
    for (const Column& column : table.columns())
        row.push_back(randomValue(column, random));
    return row;
}

/// The refusals that random rows may meet.
inline bool isRefusal(ErrorKind kind) {
    return kind == ErrorKind::DuplicateKey || kind == ErrorKind::NullKey || kind == ErrorKind::RowTooLong;
}

/// Inserts, updates and deletes at random.
inline void changeAtRandom(Table table, int changes, unsigned seed) {
    Random random(seed);
    std::vector<RowId> rows;
    for (Cursor cursor = table.scan(); cursor.next();)
        rows.push_back(cursor.id());
    for (int i = 0; i < changes; ++i) {
        const unsigned what = random() % 10;
        const std::size_t victim = rows.empty() ? 0 : random() % rows.size();
        try {
            if (what < 6 || rows.empty()) {
                rows.push_back(table.insert(randomRow(table, random)));
            } else if (what < 9) {
                table.update(rows[victim], randomRow(table, random));
            } else {
                table.erase(rows[victim]);
                rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(victim));
            }
        } catch (const Error& error) {
            if (!isRefusal(error.kind())) throw;
        }
    }
}

} // namespace jet
