#include "table_import.h"

#include "basic/numbers.h"
#include "basic/strings.h"
#include "project/marks.h"
#include "project/project_file.h"
#include "sheet/long_work.h"
#include "sheet/sight.h"
#include "tools/chainage.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <utility>

namespace exchange {
namespace {

using tables::Cell;
using tables::CellKind;
using tables::Row;

constexpr std::size_t namedRows = 3;
constexpr std::size_t namedPairs = 20;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// "1-May", "01/05/2024", "2024-05-01" in a text: what a spreadsheet makes of a chainage.
bool looksLikeDate(std::string_view text) {
    std::size_t groups = 0, separators = 0, letters = 0;
    bool inDigits = false;
    for (const char c : text) {
        groups += isDigit(c) && !inDigits;
        inDigits = isDigit(c);
        separators += c == '-' || c == '/' || c == '.';
        letters += (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (!isDigit(c) && c != '-' && c != '/' && c != '.' && c != ' ' && letters == 0) return false;
    }
    if (letters == 0) return groups == 3 && separators == 2;
    static constexpr std::array<const char*, 12> months{"jan", "feb", "mar", "apr", "may", "jun",
                                                        "jul", "aug", "sep", "oct", "nov", "dec"};
    const std::string lower = basic::lower(text);
    const auto word = lower.find_first_of("abcdefghijklmnopqrstuvwxyz");
    const bool isMonth = std::ranges::any_of(
        months, [&](const char* month) { return std::string_view(lower).substr(word).starts_with(month); });
    return isMonth && groups >= 1 && separators >= 1;
}

/// Numbers that are written as texts. Groups of thousands are understood where the decimal sign tells them
/// apart.
std::optional<double> parseNumber(std::string_view text, char decimal) {
    text = basic::trim(text);
    std::string plain;
    const char group = decimal == '.' ? ',' : '.';
    bool hasDecimal = false, hasGroup = false;
    if (text.starts_with("\xE2\x88\x92")) { // the minus sign of typesetters
        plain += '-';
        text.remove_prefix(3);
    }
    for (const char c : text) {
        if (c == decimal) {
            if (hasDecimal) return {};
            hasDecimal = true;
            plain += '.';
        } else if (c == group) {
            if (hasDecimal || plain.find_first_of("0123456789") == std::string::npos) return {};
            hasGroup = true;
        } else {
            plain += c;
        }
    }
    if (hasGroup && !hasDecimal) return {}; // a decimal sign of the other kind, more likely
    if (!basic::isNumber(plain)) return {};
    try {
        const double value = basic::val(plain);
        return std::isfinite(value) ? std::optional(value) : std::nullopt;
    } catch (const basic::RuntimeError&) {
        return {};
    }
}

/// A book's numbers are of single precision.
bool fits(double value) {
    return std::abs(value) <= double{std::numeric_limits<float>::max()};
}

bool isNumeric(ColumnKind kind) {
    switch (kind) {
    case ColumnKind::Left:
    case ColumnKind::Center:
    case ColumnKind::Right:
    case ColumnKind::SignedOffset:
    case ColumnKind::BackSight:
    case ColumnKind::InterSight:
    case ColumnKind::ForeSight:
    case ColumnKind::RLevel:
    case ColumnKind::Reading:
    case ColumnKind::ChainageMetres:
        return true;
    default:
        return false;
    }
}

/// What the values of a column should be, in the plural and with its article.
std::pair<const char*, const char*> nounOf(ColumnKind kind) {
    switch (kind) {
    case ColumnKind::Chainage:
    case ColumnKind::ChainageMetres:
        return {"chainages", "a chainage"};
    case ColumnKind::Left:
    case ColumnKind::Center:
    case ColumnKind::Right:
    case ColumnKind::SignedOffset:
        return {"offsets", "an offset"};
    case ColumnKind::RLevel:
        return {"levels", "a level"};
    case ColumnKind::Side:
        return {"sides (L, C, R)", "a side (L, C, R)"};
    case ColumnKind::KindOfReading:
        return {"kinds of reading (B.S., I.S., F.S.)", "a kind of reading (B.S., I.S., F.S.)"};
    default:
        return {"readings", "a reading"};
    }
}

char decimalSignOf(const tables::Table& table, const Layout& layout) {
    std::size_t points = 0, commas = 0;
    for (const Row& row : table.rows) {
        if (row.number < layout.firstRow) continue;
        for (std::size_t column = 0; column < std::min(row.cells.size(), layout.columns.size()); ++column) {
            if (row.cells[column].kind != CellKind::Text || !isNumeric(layout.columns[column])) continue;
            const std::string& text = row.cells[column].shown;
            points += text.find('.') != std::string::npos && text.find(',') == std::string::npos;
            commas += text.find(',') != std::string::npos && text.find('.') == std::string::npos;
        }
    }
    return commas > points ? ',' : '.';
}

/// The findings of one column, gathered by what is wrong.
class ColumnNotes {
  public:
    enum class What { Date, Error, NoValue, NoNumber, WrongWord, Fewer, Plus, NoHyphen, Truth };

    void add(What what, int row, std::string_view text) {
        Found& found = m_found[what];
        if (++found.count > namedRows) return;
        if (!found.rows.empty()) found.rows += ", ";
        found.rows += "row " + std::to_string(row);
        if (what != What::Date && what != What::NoValue)
            found.rows += " \"" + std::string(text.substr(0, 40)) + '"';
    }

    void tell(std::size_t column, ColumnKind kind, std::vector<ImportNote>& notes) const {
        for (const auto& [what, found] : m_found) {
            const bool one = found.count == 1;
            const auto [nouns, noun] = nounOf(kind);
            const std::string cells = std::to_string(found.count) + (one ? " cell is " : " cells are ");
            std::string text = "Column " + tables::columnName(static_cast<int>(column) + 1) + ": ";
            const bool leavesOut = what != What::Fewer && what != What::Plus && what != What::NoHyphen;
            switch (what) {
            case What::Date:
                text += cells + (one ? "a date, not " : "dates, not ") + (one ? noun : nouns);
                break;
            case What::Error:
                text += cells + (one ? "an error" : "errors");
                break;
            case What::NoValue:
                text += cells + (one ? "a formula without a value" : "formulas without a value");
                break;
            case What::NoNumber:
            case What::WrongWord:
            case What::Truth:
                text += cells + "no " +
                        (one ? std::string_view(noun).substr(std::string_view(noun).find(' ') + 1) : nouns)
                            .data();
                break;
            case What::Fewer:
                text += std::to_string(found.count) +
                        (one ? " cell shows fewer places than it holds; the whole value is taken"
                             : " cells show fewer places than they hold; the whole values are taken");
                break;
            case What::Plus:
                text += std::to_string(found.count) + (one ? " chainage has" : " chainages have") +
                        " \"+\" between kilometres and metres; taken with \"-\"";
                break;
            case What::NoHyphen:
                text += std::to_string(found.count) + (one ? " chainage has" : " chainages have") +
                        " no \"-\" between kilometres and metres; taken as shown";
                break;
            }
            text += " (" + found.rows + (found.count > namedRows ? ", ..." : "") + ")";
            notes.push_back({std::move(text), leavesOut});
        }
    }

  private:
    struct Found {
        std::size_t count = 0;
        std::string rows;
    };
    std::map<What, Found> m_found;
};

using What = ColumnNotes::What;

std::string oneLine(std::string_view text) {
    std::string line(text);
    for (char& c : line)
        if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    return line;
}

class Taker {
  public:
    Taker(const tables::Table& table, const Layout& layout)
        : m_table(table),
          m_layout(layout),
          m_decimal(decimalSignOf(table, layout)),
          m_columns(layout.columns.size()) {}

    TakenTable take() {
        checkColumns();
        for (const Row& row : m_table.rows)
            if (row.number >= m_layout.firstRow) takeRow(row);
        for (std::size_t column = 0; column < m_columns.size(); ++column)
            m_columns[column].tell(column, m_layout.columns[column], m_taken.notes);
        if (m_pairs > namedPairs)
            m_taken.notes.push_back(
                {std::to_string(m_pairs - namedPairs) + " more rows have both an I.S. and an F.S.", true});
        tellMerged();
        for (const std::string& note : m_table.notes)
            m_taken.notes.push_back({note, true});
        if (!m_isBook) { // a file of another kind, as like as not
            m_taken.rows.clear();
            m_taken.sources.clear();
        }
        return std::move(m_taken);
    }

  private:
    [[nodiscard]] bool has(ColumnKind kind) const { return std::ranges::count(m_layout.columns, kind) > 0; }

    void checkColumns() {
        for (int number = 1; number < columnKinds; ++number) {
            const auto kind = static_cast<ColumnKind>(number);
            if (std::ranges::count(m_layout.columns, kind) > 1)
                m_taken.notes.push_back({std::string("More than one column is ") + captionOf(kind) +
                                             "; the first that holds a value counts",
                                         true});
        }
        if (has(ColumnKind::Reading) != has(ColumnKind::KindOfReading))
            m_taken.notes.push_back({"Reading and Kind of reading go together; neither is taken", true});
        const bool any = std::ranges::any_of(m_layout.columns, [](ColumnKind kind) {
            return isNumeric(kind) && kind != ColumnKind::ChainageMetres;
        });
        m_isBook = any || has(ColumnKind::Chainage) || has(ColumnKind::ChainageMetres);
        if (!any) m_taken.notes.push_back({"No column holds readings, offsets or levels", !m_isBook});
    }

    void tellMerged() {
        const auto count = std::ranges::count_if(m_table.merged, [this](const tables::Merged& cells) {
            if (cells.firstRow < m_layout.firstRow) return false;
            for (int column = cells.firstCol;
                 column <= cells.lastCol && column <= static_cast<int>(m_columns.size()); ++column)
                if (m_layout.columns[static_cast<std::size_t>(column - 1)] != ColumnKind::Nothing)
                    return true;
            return false;
        });
        if (count > 0)
            m_taken.notes.push_back(
                {std::to_string(count) + (count == 1 ? " group" : " groups") +
                     " of merged cells: the first cell of each has the value, the others are empty",
                 false});
    }

    std::optional<double> number(const Cell& cell, std::size_t column, int row) {
        ColumnNotes& notes = m_columns[column];
        switch (cell.kind) {
        case CellKind::Number: {
            const auto shown = parseNumber(cell.shown, cell.shown.find(',') != std::string::npos &&
                                                               cell.shown.find('.') == std::string::npos
                                                           ? ','
                                                           : '.');
            if (shown && static_cast<float>(*shown) != static_cast<float>(cell.number) &&
                std::abs(*shown - cell.number) > 0.00005)
                notes.add(What::Fewer, row, cell.shown);
            if (fits(cell.number)) return cell.number;
            notes.add(What::NoNumber, row, cell.shown);
            return {};
        }
        case CellKind::Text:
            if (const auto value = parseNumber(cell.shown, m_decimal); value && fits(*value)) return value;
            if (basic::trim(cell.shown).empty()) return {};
            notes.add(looksLikeDate(cell.shown) ? What::Date : What::NoNumber, row, cell.shown);
            return {};
        default:
            refuse(cell, column, row);
            return {};
        }
    }

    /// True for a cell that gives no value, whatever its column is; noted.
    bool refuse(const Cell& cell, std::size_t column, int row) {
        ColumnNotes& notes = m_columns[column];
        if (cell.kind == CellKind::Date) notes.add(What::Date, row, cell.shown);
        if (cell.kind == CellKind::Error) notes.add(What::Error, row, cell.shown);
        if (cell.kind == CellKind::NoValue) notes.add(What::NoValue, row, cell.shown);
        if (cell.kind == CellKind::Truth) notes.add(What::Truth, row, cell.shown);
        return cell.kind != CellKind::Number && cell.kind != CellKind::Text;
    }

    std::string chainage(const Cell& cell, std::size_t column, int row) {
        std::string text = oneLine(basic::trim(cell.shown));
        if (cell.kind == CellKind::Text && looksLikeDate(text)) {
            m_columns[column].add(What::Date, row, text);
            return {};
        }
        if (refuse(cell, column, row)) return {};
        const std::size_t plus = text.find('+');
        const auto digits = [](std::string_view part) {
            return !part.empty() && part.find_first_not_of("0123456789.") == std::string_view::npos;
        };
        const std::string_view all = text;
        if (plus != std::string::npos && digits(all.substr(0, plus)) && digits(all.substr(plus + 1))) {
            m_columns[column].add(What::Plus, row, text);
            return basic::format(basic::val(all.substr(0, plus)), basic::pattern("#00")) + "-" +
                   basic::format(basic::val(all.substr(plus + 1)), basic::pattern("#000.###"));
        }
        if (basic::isNumber(text) && text.find('-') == std::string::npos)
            m_columns[column].add(What::NoHyphen, row, text);
        return text;
    }

    std::string metres(double value) const {
        const double whole = std::floor(value / 1000);
        return basic::format(whole, basic::pattern("#00")) + "-" +
               basic::format(value - whole * 1000, basic::pattern("#000.###"));
    }

    static std::string sight(double value) { return basic::plainText(static_cast<float>(value)); }

    void takeRow(const Row& row) {
        BookRow cells;
        std::optional<double> offset, reading;
        char side = 0, kind = 0;
        const std::size_t width = std::min(row.cells.size(), m_layout.columns.size());
        for (std::size_t column = 0; column < width; ++column) {
            const Cell& cell = row.cells[column];
            const ColumnKind is = m_layout.columns[column];
            if (cell.kind == CellKind::Empty || is == ColumnKind::Nothing) continue;
            if (isNumeric(is)) {
                const auto value = number(cell, column, row.number);
                if (!value) continue;
                if (is == ColumnKind::SignedOffset)
                    offset = offset ? offset : value;
                else if (is == ColumnKind::Reading)
                    reading = reading ? reading : value;
                else
                    put(cells, is, *value);
            } else if (is == ColumnKind::Chainage) {
                putText(cells[sheet::Chainage], chainage(cell, column, row.number));
            } else if (is == ColumnKind::Remark) {
                // An error in words is a remark like any other.
                putText(cells[sheet::Remark], oneLine(cell.shown));
            } else if (!refuse(cell, column, row.number) && !basic::trim(cell.shown).empty()) {
                char& letter = is == ColumnKind::Side ? side : kind;
                letter = is == ColumnKind::Side ? sideOf(cell.shown) : sightOf(basic::trim(cell.shown));
                if (letter == 0) m_columns[column].add(What::WrongWord, row.number, cell.shown);
            }
        }
        if (m_layout.ownHeadings) joinRemark(row, cells[sheet::Remark]);
        putOffset(cells, offset, side);
        const bool merges = putReading(cells, reading, kind);
        if (std::ranges::all_of(cells, [](const std::string& text) { return text.empty(); })) return;
        if (!cells[sheet::InterSight].empty() && !cells[sheet::ForeSight].empty() && ++m_pairs <= namedPairs)
            m_taken.notes.push_back(
                {"Row " + std::to_string(row.number) + " has both an I.S. and an F.S.", true});
        if (merges && mergeBackSight(cells)) return;
        m_taken.rows.push_back(std::move(cells));
        m_taken.sources.push_back(row.number);
    }

    static void putText(std::string& cell, std::string text) {
        if (cell.empty()) cell = std::move(text);
    }

    void put(BookRow& cells, ColumnKind kind, double value) const {
        switch (kind) {
        case ColumnKind::ChainageMetres:
            return putText(cells[sheet::Chainage], metres(value));
        case ColumnKind::Left:
            return putText(cells[sheet::Left], sight(value));
        case ColumnKind::Center:
            return putText(cells[sheet::Center], sight(value));
        case ColumnKind::Right:
            return putText(cells[sheet::Right], sight(value));
        case ColumnKind::BackSight:
            return putText(cells[sheet::BackSight], sight(value));
        case ColumnKind::InterSight:
            return putText(cells[sheet::InterSight], sight(value));
        case ColumnKind::ForeSight:
            return putText(cells[sheet::ForeSight], sight(value));
        default:
            return putText(cells[sheet::RLevel], basic::format(value, basic::pattern("#0.000#")));
        }
    }

    static void putOffset(BookRow& cells, std::optional<double> offset, char side) {
        if (!offset && side != 'C') return;
        const double distance = offset.value_or(0);
        const int column = side == 'L'    ? sheet::Left
                           : side == 'R'  ? sheet::Right
                           : side == 'C'  ? sheet::Center
                           : distance < 0 ? sheet::Left
                           : distance > 0 ? sheet::Right
                                          : sheet::Center;
        putText(cells[static_cast<std::size_t>(column)], sight(std::abs(distance)));
    }

    /// True for a back sight that may belong to the row before.
    static bool putReading(BookRow& cells, std::optional<double> reading, char kind) {
        if (!reading || kind == 0) return false;
        const int column = kind == 'B'   ? sheet::BackSight
                           : kind == 'I' ? sheet::InterSight
                                         : sheet::ForeSight;
        putText(cells[static_cast<std::size_t>(column)], sight(*reading));
        return kind == 'B';
    }

    bool mergeBackSight(const BookRow& cells) {
        if (m_taken.rows.empty()) return false;
        BookRow& before = m_taken.rows.back();
        const std::string& name = cells[sheet::Remark];
        const bool samePoint = name.empty() || before[sheet::Remark].empty() || name == before[sheet::Remark];
        if (before[sheet::ForeSight].empty() || !before[sheet::BackSight].empty() || !samePoint) return false;
        before[sheet::BackSight] = cells[sheet::BackSight];
        putText(before[sheet::Remark], name);
        return true;
    }

    // Under our own headings a comma in a remark stands unquoted, and one comma ends the line.
    void joinRemark(const Row& row, std::string& remark) const {
        for (std::size_t column = sheet::columnCount; column < row.cells.size(); ++column)
            remark += "," + oneLine(row.cells[column].shown);
        if (row.cells.size() > sheet::columnCount && remark.ends_with(',')) remark.pop_back();
    }

    const tables::Table& m_table;
    const Layout& m_layout;
    char m_decimal;
    std::vector<ColumnNotes> m_columns;
    TakenTable m_taken;
    bool m_isBook = true; ///< some column holds chainages, readings, offsets or levels
    std::size_t m_pairs = 0;
};

int lastFilledRow(const sheet::Grid& grid) {
    for (int row = grid.Rows() - 1; row > 0; --row)
        for (int col = 0; col < grid.Cols(); ++col)
            if (!grid.Text(row, col).empty()) return row;
    return 0;
}

constexpr double sameLevel = 0.001; // metres

std::string_view pointName(std::string_view remark) {
    const auto known = sheet::knownLevelIn(remark);
    return known ? known->name : basic::trim(remark);
}

/// Whether a row of the book and a row that opens others are about one point, as far as they say.
bool isSamePoint(const sheet::Grid& grid, int row, const BookRow& opening) {
    const std::string_view here = pointName(grid.Text(row, sheet::Remark));
    const std::string_view there = pointName(opening[sheet::Remark]);
    if (!here.empty() && !there.empty()) return basic::sameText(here, there);
    const std::string& level = grid.Text(row, sheet::RLevel);
    if (level.empty() || opening[sheet::RLevel].empty()) return true;
    return std::abs(basic::val(level) - basic::val(opening[sheet::RLevel])) < sameLevel;
}

} // namespace

bool TakenTable::leavesOut() const {
    return std::ranges::any_of(notes, &ImportNote::leavesOut);
}

TakenTable takeTable(const tables::Table& table, const Layout& layout) {
    return Taker(table, layout).take();
}

Joint jointBelow(const sheet::Grid& grid, const std::vector<BookRow>& rows) {
    Joint joint;
    joint.above = lastFilledRow(grid);
    if (rows.empty() || joint.above == 0) return joint;
    const BookRow& first = rows.front();
    const bool opens = !first[sheet::BackSight].empty() && first[sheet::InterSight].empty() &&
                       first[sheet::ForeSight].empty();
    if (!opens) return joint;
    const bool turns = joint.above == 1 || !grid.Text(joint.above, sheet::ForeSight).empty();
    const std::string row = "row " + std::to_string(joint.above);
    const std::string point(pointName(first[sheet::Remark]));
    joint.shares =
        turns && grid.Text(joint.above, sheet::BackSight).empty() && isSamePoint(grid, joint.above, first);
    if (!joint.shares) {
        joint.note = {"The rows begin with a back sight" + (point.empty() ? "" : " on \"" + point + '"') +
                          ", and the book does not end with that change point (" + row +
                          "): all levels of a book hang on its row 1, so these would be wrong. Import them "
                          "into a book of their own",
                      true};
    } else {
        joint.note.text = "The first back sight goes into " + row + ", where the book ends";
        if (!first[sheet::RLevel].empty())
            joint.note.text += "; the levels go on from there, not from " + first[sheet::RLevel];
    }
    return joint;
}

project::Outcome importRows(project::Book& book, desktop::Desktop& desktop, const std::vector<BookRow>& rows,
                            ImportPlace place) {
    if (rows.empty()) {
        desktop.status("There is nothing to import; the book is as it was");
        return project::Outcome::Failed;
    }
    sheet::Grid& grid = book.MSFG;
    const Joint joint = place == ImportPlace::AddBelow ? jointBelow(grid, rows) : Joint{};
    const std::size_t together = static_cast<std::size_t>(joint.above) + rows.size();
    if (together > static_cast<std::size_t>(project::mostRows)) {
        desktop.status(std::to_string(together) + " rows; a book takes " + std::to_string(project::mostRows) +
                       " at most; the book is as it was");
        return project::Outcome::Failed;
    }
    if (place == ImportPlace::AddBelow) {
        if (joint.note.leavesOut) {
            desktop.status(joint.note.text + "; the book is as it was");
            return project::Outcome::Failed;
        }
    } else {
        // An import that nobody has touched is read again as easily.
        const bool untouched = book.ImportMark != 0 && project::gridMark(grid) == book.ImportMark;
        if (!untouched && !project::mayDrop(book, desktop)) return project::Outcome::Refused;
    }
    sheet::LongWork work(grid, desktop);
    const auto skipped = static_cast<std::size_t>(joint.shares);
    const int first = joint.above + 1;
    const int count = static_cast<int>(rows.size() - skipped);
    grid.setRows(first);
    grid.setRows(first + std::max(count, 1));
    if (joint.shares) {
        grid.setText(joint.above, sheet::BackSight, rows.front()[sheet::BackSight]);
        if (grid.Text(joint.above, sheet::Remark).empty())
            grid.setText(joint.above, sheet::Remark, rows.front()[sheet::Remark]);
    }
    for (int row = 0; row < count; ++row) {
        for (int col = 0; col < sheet::columnCount; ++col)
            grid.setText(first + row, col,
                         rows[skipped + static_cast<std::size_t>(row)][static_cast<std::size_t>(col)]);
        work.done(row + 1, count);
    }
    grid.moveTo(grid.Rows() - 1, sheet::Chainage);
    if (place == ImportPlace::Replace) book.ImportMark = project::gridMark(grid);
    desktop.status(std::to_string(count) + (count == 1 ? " row" : " rows") +
                   (place == ImportPlace::Replace ? " imported" : " added below") +
                   (joint.shares ? ", the first back sight in row " + std::to_string(joint.above) : "") +
                   "; Cal reduces the levels");
    return project::Outcome::Done;
}

} // namespace exchange
