#pragma once

#include "tables/table.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace exchange {

/// What a column of a foreign table is.
enum class ColumnKind {
    Nothing,
    Chainage,
    ChainageMetres, ///< metres along the road, written as KK-MMM when taken; never guessed
    Left,
    Center,
    Right,
    SignedOffset, ///< left of the centre line is negative; with a Side column its distance
    Side,         ///< L, R or C
    BackSight,
    InterSight,
    ForeSight,
    RLevel,
    Remark,
    Reading, ///< any sight; Kind of reading tells which
    KindOfReading
};
inline constexpr int columnKinds = 15;

[[nodiscard]] const char* captionOf(ColumnKind kind); ///< as the boxes over the columns show it
[[nodiscard]] const char* wordOf(ColumnKind kind);    ///< as a command line writes it
/// Either of the two, whatever its case.
[[nodiscard]] std::optional<ColumnKind> columnKindOf(std::string_view text);

struct Layout {
    int headingRow = 0; ///< of the sheet; 0: there is none
    int firstRow = 1;   ///< where the values begin
    std::vector<ColumnKind> columns;
    std::vector<std::string> headings;
    bool ownHeadings = false; ///< the ten of this program: what follows the tenth belongs to the remark
};

/// The row among the first ones that has most words of a field book's heading, those that stand over its
/// empty cells too; 0 when none has two of its own.
[[nodiscard]] int guessHeadingRow(const tables::Table& table);

/// What the columns are, by the words of their headings and by their values. Each kind is guessed once.
[[nodiscard]] Layout guessLayout(const tables::Table& table, int headingRow);

/// The kind that a heading's words tell; nothing when they tell none. Hgt.Inst tells Nothing.
[[nodiscard]] std::optional<ColumnKind> kindOfHeading(std::string_view heading);

/// What a text says about side or kind of reading: 'L', 'C', 'R', and 'B', 'I', 'F'; 0 when it says nothing.
[[nodiscard]] char sideOf(std::string_view text);
[[nodiscard]] char sightOf(std::string_view text);

} // namespace exchange
