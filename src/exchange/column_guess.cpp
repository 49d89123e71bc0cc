#include "column_guess.h"

#include "basic/numbers.h"
#include "basic/strings.h"
#include "sheet/book.h"

#include <algorithm>
#include <array>

namespace exchange {
namespace {

using tables::Cell;
using tables::CellKind;
using tables::Row;

constexpr std::size_t searchedRows = 25;
constexpr std::size_t sampledRows = 200;

struct KindName {
    ColumnKind kind;
    const char* caption;
    const char* word;
};
constexpr std::array<KindName, columnKinds> names{{
    {ColumnKind::Nothing, "-", "nothing"},
    {ColumnKind::Chainage, "Chainage", "chainage"},
    {ColumnKind::ChainageMetres, "Chainage, metres", "metres"},
    {ColumnKind::Left, "Left", "left"},
    {ColumnKind::Center, "Center", "center"},
    {ColumnKind::Right, "Right", "right"},
    {ColumnKind::SignedOffset, "Offset, - left", "offset"},
    {ColumnKind::Side, "Side", "side"},
    {ColumnKind::BackSight, "B.S.", "bs"},
    {ColumnKind::InterSight, "I.S.", "is"},
    {ColumnKind::ForeSight, "F.S.", "fs"},
    {ColumnKind::RLevel, "R.Level.", "level"},
    {ColumnKind::Remark, "Remark", "remark"},
    {ColumnKind::Reading, "Reading", "reading"},
    {ColumnKind::KindOfReading, "Kind of reading", "kind"},
}};

/// A heading that is this whole word, or has it among its words.
struct HeadingWord {
    const char* word;
    ColumnKind kind;
    bool alone = false; ///< too short or too common to be looked for inside a longer heading
};
// Looked for in this order, so that "BS reading" is a back sight and "Left offset" the left column.
constexpr HeadingWord headingWords[] = {
    {"instrument", ColumnKind::Nothing},
    {"inst", ColumnKind::Nothing},
    {"hi", ColumnKind::Nothing},
    {"hoi", ColumnKind::Nothing},
    {"rise", ColumnKind::Nothing},
    {"fall", ColumnKind::Nothing},
    {"adj", ColumnKind::Nothing},
    {"adjusted", ColumnKind::Nothing},
    {"corr", ColumnKind::Nothing},
    {"correction", ColumnKind::Nothing},
    {"error", ColumnKind::Nothing},
    {"kind", ColumnKind::KindOfReading},
    {"type", ColumnKind::KindOfReading},
    {"sight", ColumnKind::KindOfReading, true},
    {"back", ColumnKind::BackSight},
    {"backsight", ColumnKind::BackSight},
    {"bs", ColumnKind::BackSight},
    {"b s", ColumnKind::BackSight, true},
    {"inter", ColumnKind::InterSight},
    {"intermediate", ColumnKind::InterSight},
    {"intersight", ColumnKind::InterSight},
    {"is", ColumnKind::InterSight},
    {"i s", ColumnKind::InterSight, true},
    {"fore", ColumnKind::ForeSight},
    {"foresight", ColumnKind::ForeSight},
    {"fs", ColumnKind::ForeSight},
    {"f s", ColumnKind::ForeSight, true},
    {"side", ColumnKind::Side},
    {"l r", ColumnKind::Side, true},
    {"left", ColumnKind::Left},
    {"lhs", ColumnKind::Left},
    {"l", ColumnKind::Left, true},
    {"lt", ColumnKind::Left, true},
    {"center", ColumnKind::Center},
    {"centre", ColumnKind::Center},
    {"centreline", ColumnKind::Center},
    {"centerline", ColumnKind::Center},
    {"cl", ColumnKind::Center, true},
    {"c", ColumnKind::Center, true},
    {"right", ColumnKind::Right},
    {"rhs", ColumnKind::Right},
    {"r", ColumnKind::Right, true},
    {"rt", ColumnKind::Right, true},
    {"reading", ColumnKind::Reading},
    {"readings", ColumnKind::Reading},
    {"staff", ColumnKind::Reading, true},
    {"rl", ColumnKind::RLevel},
    {"r l", ColumnKind::RLevel, true},
    {"rlevel", ColumnKind::RLevel, true},
    {"level", ColumnKind::RLevel},
    {"elev", ColumnKind::RLevel},
    {"elevation", ColumnKind::RLevel},
    {"height", ColumnKind::RLevel, true},
    {"chainage", ColumnKind::Chainage},
    {"chain", ColumnKind::Chainage, true},
    {"ch", ColumnKind::Chainage},
    {"chn", ColumnKind::Chainage, true},
    {"km", ColumnKind::Chainage},
    {"station", ColumnKind::Chainage},
    {"stn", ColumnKind::Chainage},
    {"sta", ColumnKind::Chainage},
    {"peg", ColumnKind::Chainage},
    {"offset", ColumnKind::SignedOffset},
    {"offsets", ColumnKind::SignedOffset},
    {"o s", ColumnKind::SignedOffset, true},
    {"os", ColumnKind::SignedOffset, true},
    {"dist", ColumnKind::SignedOffset},
    {"distance", ColumnKind::SignedOffset},
    {"remark", ColumnKind::Remark},
    {"remarks", ColumnKind::Remark},
    {"note", ColumnKind::Remark},
    {"notes", ColumnKind::Remark},
    {"description", ColumnKind::Remark},
    {"point", ColumnKind::Remark},
    {"name", ColumnKind::Remark},
};

/// Lower case, words apart by one blank, what stands in brackets (a unit) left out. Points between single
/// letters go, so that "B.S." is a word.
std::string plainHeading(std::string_view heading) {
    std::string plain;
    int brackets = 0;
    for (const char raw : heading) {
        brackets += raw == '(' || raw == '[';
        const char c = raw >= 'A' && raw <= 'Z' ? static_cast<char>(raw - 'A' + 'a') : raw;
        const bool isWord =
            (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || (static_cast<unsigned char>(c) >= 0x80);
        if (brackets > 0) {
            brackets -= raw == ')' || raw == ']';
        } else if (isWord) {
            plain += c;
        } else if (c != '.' && !plain.empty() && plain.back() != ' ') {
            plain += ' ';
        } else if (c == '.' && plain.size() > 2 && plain[plain.size() - 2] != ' ' && plain.back() != ' ') {
            plain += ' '; // "Elev." ends a word, "B.S." does not
        }
    }
    while (plain.ends_with(' '))
        plain.pop_back();
    for (const std::string_view unit : {" m", " mm", " metres", " meters"})
        if (plain.ends_with(unit)) plain.erase(plain.size() - unit.size());
    return plain;
}

bool hasWord(std::string_view text, std::string_view word) {
    for (std::size_t at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1)) {
        const bool begins = at == 0 || text[at - 1] == ' ';
        const std::size_t end = at + word.size();
        if (begins && (end == text.size() || text[end] == ' ')) return true;
    }
    return false;
}

struct HeadingMatch {
    ColumnKind kind;
    bool whole;
};

std::optional<HeadingMatch> matchHeading(std::string_view heading) {
    const std::string plain = plainHeading(heading);
    if (plain.empty()) return {};
    for (const HeadingWord& each : headingWords)
        if (plain == each.word) return HeadingMatch{each.kind, true};
    for (const HeadingWord& each : headingWords)
        if (!each.alone && hasWord(plain, each.word)) return HeadingMatch{each.kind, false};
    return {};
}

std::string_view textAt(const Row& row, std::size_t column) {
    return column < row.cells.size() ? basic::trim(row.cells[column].shown) : std::string_view{};
}

/// What the values of a column look like.
struct Values {
    std::size_t filled = 0, numbers = 0, chainages = 0, sides = 0, sights = 0, dates = 0;
};

bool looksLikeChainage(std::string_view text) {
    if (basic::sameText(text, "CP") || basic::sameText(text, "TBM")) return true;
    const std::size_t sign = text.find_first_of("-+");
    if (sign == 0 || sign == std::string_view::npos || sign + 2 > text.size()) return false;
    const auto allDigits = [](std::string_view part) {
        return part.find_first_not_of("0123456789.") == std::string_view::npos;
    };
    return allDigits(text.substr(0, sign)) && allDigits(text.substr(sign + 1));
}

Values valuesOf(const tables::Table& table, std::size_t column, int firstRow) {
    Values values;
    std::size_t seen = 0;
    for (const Row& row : table.rows) {
        if (row.number < firstRow || column >= row.cells.size()) continue;
        const Cell& cell = row.cells[column];
        const std::string_view text = textAt(row, column);
        if (cell.kind == CellKind::Empty || text.empty()) continue;
        if (++seen > sampledRows) break;
        ++values.filled;
        values.numbers += cell.kind == CellKind::Number || basic::isNumber(text);
        values.dates += cell.kind == CellKind::Date;
        values.chainages += looksLikeChainage(text);
        values.sides += sideOf(text) != 0;
        values.sights += sightOf(text) != 0;
    }
    return values;
}

bool most(std::size_t part, const Values& values) {
    return values.filled > 0 && part * 2 > values.filled;
}

/// The cell of a heading; where it is empty, the one above it, which may be merged with it.
std::string headingAt(const tables::Table& table, std::size_t index, std::size_t column) {
    const std::string_view text = textAt(table.rows[index], column);
    const bool isNext = index > 0 && table.rows[index - 1].number + 1 == table.rows[index].number;
    return std::string(text.empty() && isNext ? textAt(table.rows[index - 1], column) : text);
}

bool isUnitRow(const Row& row) {
    bool any = false;
    for (const Cell& cell : row.cells) {
        std::string text = basic::lower(basic::trim(cell.shown));
        if (text.empty()) continue;
        if (text.size() > 2 && (text.front() == '(' || text.front() == '['))
            text = text.substr(1, text.size() - 2);
        if (text != "m" && text != "mm" && text != "km" && text != "ft" && text != "-" && text != "metres")
            return false;
        any = true;
    }
    return any;
}

bool areOwn(const std::vector<std::string>& headings) {
    const sheet::Book book;
    for (int col = 0; col < sheet::columnCount; ++col) {
        const auto column = static_cast<std::size_t>(col);
        if (column >= headings.size() || !basic::sameText(headings[column], book.MSFG.Text(0, col)))
            return false;
    }
    return true;
}

/// Kinds that the headings leave open, told by the values.
void guessByValues(const tables::Table& table, Layout& layout) {
    const auto has = [&layout](ColumnKind kind) { return std::ranges::count(layout.columns, kind) > 0; };
    for (std::size_t column = 0; column < layout.columns.size(); ++column) {
        ColumnKind& kind = layout.columns[column];
        const Values values = valuesOf(table, column, layout.firstRow);
        if (kind == ColumnKind::Chainage && !most(values.chainages + values.numbers + values.dates, values) &&
            values.filled > 0 && !has(ColumnKind::Remark))
            kind = ColumnKind::Remark; // "Station": BM 1, TP 2
        if (kind != ColumnKind::Nothing || !layout.headings[column].empty()) continue;
        if (most(values.chainages, values) && !has(ColumnKind::Chainage))
            kind = ColumnKind::Chainage;
        else if (most(values.sights, values) && !has(ColumnKind::KindOfReading))
            kind = ColumnKind::KindOfReading;
        else if (most(values.sides, values) && !has(ColumnKind::Side))
            kind = ColumnKind::Side;
        else if (values.filled > 0 && values.numbers + values.dates + values.chainages == 0 &&
                 !has(ColumnKind::Remark))
            kind = ColumnKind::Remark;
    }
    // A kind without readings, or readings without a kind, say nothing.
    if (has(ColumnKind::KindOfReading) && !has(ColumnKind::Reading))
        std::ranges::replace(layout.columns, ColumnKind::KindOfReading, ColumnKind::Nothing);
    if (has(ColumnKind::Reading) && !has(ColumnKind::KindOfReading))
        std::ranges::replace(layout.columns, ColumnKind::Reading, ColumnKind::Nothing);
}

} // namespace

const char* captionOf(ColumnKind kind) {
    return names[static_cast<std::size_t>(kind)].caption;
}

const char* wordOf(ColumnKind kind) {
    return names[static_cast<std::size_t>(kind)].word;
}

std::optional<ColumnKind> columnKindOf(std::string_view text) {
    for (const KindName& name : names)
        if (basic::sameText(text, name.word) || basic::sameText(text, name.caption)) return name.kind;
    return kindOfHeading(text);
}

std::optional<ColumnKind> kindOfHeading(std::string_view heading) {
    const auto match = matchHeading(heading);
    return match ? std::optional(match->kind) : std::nullopt;
}

char sideOf(std::string_view text) {
    const std::string plain = plainHeading(text);
    for (const char* word : {"l", "left", "lhs", "lt"})
        if (plain == word) return 'L';
    for (const char* word : {"r", "right", "rhs", "rt"})
        if (plain == word) return 'R';
    for (const char* word : {"c", "cl", "center", "centre", "centreline", "centerline", "m"})
        if (plain == word) return 'C';
    return 0;
}

char sightOf(std::string_view text) {
    const auto kind = kindOfHeading(text);
    if (kind == ColumnKind::BackSight || basic::sameText(text, "B")) return 'B';
    if (kind == ColumnKind::InterSight || basic::sameText(text, "I")) return 'I';
    return kind == ColumnKind::ForeSight || basic::sameText(text, "F") ? 'F' : '\0';
}

int guessHeadingRow(const tables::Table& table) {
    std::size_t best = 1;
    int row = 0;
    for (std::size_t index = 0; index < std::min(table.rows.size(), searchedRows); ++index) {
        const Row& here = table.rows[index];
        std::size_t width = here.cells.size(), own = 0;
        if (index > 0) width = std::max(width, table.rows[index - 1].cells.size());
        std::array<bool, columnKinds> found{};
        for (std::size_t column = 0; column < width; ++column) {
            const bool isText = column < here.cells.size() && here.cells[column].kind == CellKind::Text;
            if (!isText && !textAt(here, column).empty()) continue;
            const auto kind = kindOfHeading(headingAt(table, index, column));
            if (!kind || *kind == ColumnKind::Nothing) continue;
            found[static_cast<std::size_t>(*kind)] = true;
            own += isText;
        }
        if (own < 2) continue; // the rest is the heading's above it
        const auto count = static_cast<std::size_t>(std::ranges::count(found, true));
        if (count <= best) continue;
        best = count;
        row = table.rows[index].number;
    }
    return row;
}

Layout guessLayout(const tables::Table& table, int headingRow) {
    Layout layout;
    layout.headingRow = headingRow;
    layout.firstRow = headingRow + 1;
    std::size_t width = 0;
    for (const Row& row : table.rows)
        width = std::max(width, row.cells.size());
    layout.columns.assign(width, ColumnKind::Nothing);
    layout.headings.assign(width, {});
    const auto heading = std::ranges::find(table.rows, headingRow, &Row::number);
    if (heading != table.rows.end()) {
        const auto index = static_cast<std::size_t>(heading - table.rows.begin());
        for (std::size_t column = 0; column < width; ++column)
            layout.headings[column] = headingAt(table, index, column);
        if (index + 1 < table.rows.size() && isUnitRow(table.rows[index + 1]))
            layout.firstRow = table.rows[index + 1].number + 1;
    }
    layout.ownHeadings = areOwn(layout.headings);
    // A heading that is the word itself goes before one that only holds it.
    for (const bool whole : {true, false})
        for (std::size_t column = 0; column < width; ++column) {
            if (layout.ownHeadings && column >= sheet::columnCount) break;
            const auto match = matchHeading(layout.headings[column]);
            const bool isFree = match && std::ranges::count(layout.columns, match->kind) == 0;
            if (isFree && match->whole == whole && layout.columns[column] == ColumnKind::Nothing)
                layout.columns[column] = match->kind;
        }
    if (!layout.ownHeadings) guessByValues(table, layout);
    return layout;
}

} // namespace exchange
