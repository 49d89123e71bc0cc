#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace jet {

/// The two file formats: Access 97, and Access 2000 to 2003.
enum class Format : std::uint8_t { Jet3, Jet4 };

/// Column types; the numbers are those of the file.
enum class ColumnType : std::uint8_t {
    Boolean = 1,
    Byte = 2,
    Integer = 3,
    Long = 4,
    Currency = 5,
    Single = 6,
    Double = 7,
    DateTime = 8,
    Binary = 9,
    Text = 10,
    Ole = 11,
    Memo = 12,
    Guid = 15,
    Numeric = 16,
    FixedBinary = 17,
};

using Bytes = std::vector<std::uint8_t>;

struct Null {
    friend bool operator==(Null, Null) = default;
};

struct Currency {
    std::int64_t tenThousandths = 0;
    friend bool operator==(Currency, Currency) = default;
};

/// Days since 1899-12-30 00:00; the fraction is the time of day, added forward for negative dates too.
struct DateTime {
    double days = 0;
    friend bool operator==(DateTime, DateTime) = default;
};

struct Guid {
    std::array<std::uint8_t, 16> bytes{}; ///< in the order in which they are printed
    friend bool operator==(const Guid&, const Guid&) = default;
};

/// (-1)^negative * magnitude / 10^scale; the scale is the column's.
struct Numeric {
    bool negative = false;
    std::array<std::uint8_t, 16> magnitude{}; ///< most significant byte first
    friend bool operator==(const Numeric&, const Numeric&) = default;
};

/// A value of a column. Which alternative a column takes is fixed by its type: Boolean bool, Byte uint8,
/// Integer int16, Long int32, Currency, Single float, Double double, DateTime, Text and Memo string (UTF-8),
/// Binary, FixedBinary and Ole Bytes, Guid, Numeric. Null stands in every column but Boolean, where it reads
/// as false.
using Value = std::variant<Null, bool, std::uint8_t, std::int16_t, std::int32_t, Currency, float, double,
                           DateTime, std::string, Bytes, Guid, Numeric>;

/// One value a column, in the order of Table::columns().
using Row = std::vector<Value>;

[[nodiscard]] inline bool isNull(const Value& value) {
    return std::holds_alternative<Null>(value);
}

} // namespace jet
