#include "project_file.h"

#include "basic/files.h"
#include "basic/numbers.h"
#include "dao/error_numbers.h"
#include "sheet/cells.h"
#include "sheet/long_work.h"
#include "sheet/sight.h"
#include "tools/chainage.h"
#include "tools/safe_field_value.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace project {

namespace {

constexpr const char* table = "Grl";

/// The fields of Grl, looked up once and not by name in each record. A field that an unusual file lacks is an
/// error where it is used.
class Fields {
  public:
    enum Name { Chn, Oft, B, i, F, HI, rl, Rem, count };

    explicit Fields(dao::Recordset& grl) : m_grl(grl) {
        for (std::size_t name = 0; name < count; ++name) {
            try {
                m_fields[name] = grl.Fields(names[name]);
            } catch (const basic::RuntimeError&) {
                m_fields[name].reset();
            }
        }
    }

    dao::Field& operator[](Name name) {
        if (!m_fields[name]) m_fields[name] = m_grl.Fields(names[name]); // raises that there is none
        return *m_fields[name];
    }

  private:
    static constexpr std::array<const char*, count> names{"Chn", "Oft", "B", "i", "F", "HI", "rl", "Rem"};
    dao::Recordset& m_grl;
    std::array<std::optional<dao::Field>, count> m_fields;
};

/// Fields that hold the text of one cell, with the cell's column.
struct CellField {
    Fields::Name name;
    int col;
};
constexpr std::array<CellField, 6> cellFields{{{Fields::B, sheet::BackSight},
                                               {Fields::i, sheet::InterSight},
                                               {Fields::F, sheet::ForeSight},
                                               {Fields::HI, sheet::HgtInst},
                                               {Fields::rl, sheet::RLevel},
                                               {Fields::Rem, sheet::Remark}}};

/// A text that a field does not take: too long, no number, or not allowed there. Whatever else goes wrong is
/// no matter of one cell.
bool isRefusal(const basic::RuntimeError& error) {
    using dao::EngineError;
    const int number = error.number();
    return dao::is(number, EngineError::TextTooLong) || dao::is(number, EngineError::DataTypeConversion) ||
           dao::is(number, EngineError::ZeroLengthText) || number == basic::Overflow ||
           number == basic::TypeMismatch;
}

/// Writes rows into the records of a table and counts what the table does not take.
class RowWriter {
  public:
    RowWriter(dao::Recordset& grl, const sheet::Grid& grid) : m_grl(grl), m_fields(grl), m_grid(grid) {}

    void write(int row) {
        m_row = row;
        m_grl.AddNew();
        if (!text(sheet::Chainage).empty() || m_fields[Fields::Chn].AllowZeroLength())
            setText(Fields::Chn, sheet::Chainage);
        writeOffset();
        for (const CellField& field : cellFields)
            if (!text(field.col).empty()) setText(field.name, field.col);
        m_grl.Update();
    }

    [[nodiscard]] const Refused& refused() const { return m_refused; }

  private:
    [[nodiscard]] const std::string& text(int col) const { return m_grid.Text(m_row, col); }

    /// Each side that is filled is written over what stands before it in the order of the file, so that a
    /// text that is no number leaves that.
    void writeOffset() {
        const std::string& center = text(sheet::Center);
        const bool sided = !text(sheet::Left).empty() || !text(sheet::Right).empty();
        if (center.empty() || !sided)
            set(Fields::Oft, sheet::Center, [&] { return number(center.empty() ? 0 : basic::cDbl(center)); });
        for (const sheet::Column side : sheet::fileRule.columns)
            if (side != sheet::Center && !text(side).empty())
                set(Fields::Oft, side,
                    [&] { return number((side == sheet::Left ? -1 : 1) * basic::val(text(side))); });
    }

    static double number(double value) { return value == 0 ? 0.0 : value; } // never minus zero

    void setText(Fields::Name name, int col) {
        set(name, col, [&]() -> const std::string& { return text(col); });
    }

    template <typename Make>
    void set(Fields::Name name, int col, Make&& make) {
        try {
            m_fields[name].setValue(make());
        } catch (const basic::RuntimeError& error) {
            refuse(col, error);
        }
    }

    /// Leaves the cell out, or raises what is no refusal of its text.
    void refuse(int col, const basic::RuntimeError& error) {
        if (!isRefusal(error)) throw error;
        if (m_refused.count++ == 0) {
            m_refused.row = m_row;
            m_refused.col = col;
        }
    }

    dao::Recordset& m_grl;
    Fields m_fields;
    const sheet::Grid& m_grid;
    int m_row = 0;
    Refused m_refused;
};

/// A value as a number, if it reads as one.
std::optional<double> numberOf(const dao::Value& value) {
    if (const auto* whole = std::get_if<std::int32_t>(&value)) return *whole;
    if (const auto* single = std::get_if<float>(&value)) return *single;
    if (const auto* real = std::get_if<double>(&value)) return *real;
    if (const auto* text = std::get_if<std::string>(&value); text != nullptr && basic::isNumber(*text))
        return basic::cDbl(*text);
    return std::nullopt;
}

/// The text is a level as the book shows it, which formatting would give back.
bool isLevelText(std::string_view text) {
    constexpr std::size_t decimals = 4; // and the point
    constexpr std::size_t longest = 14; // beyond, digits get lost
    const bool negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    if (text.size() <= decimals || text.size() > longest || text[text.size() - decimals] != '.') return false;
    if (text.front() == '0' && (text.size() > decimals + 1 || (negative && text == "0.000"))) return false;
    return std::ranges::count_if(text, [](char c) { return c >= '0' && c <= '9'; }) + 1 == std::ssize(text);
}

/// The text of an offset without its sign, in the column of its side.
void showOffset(sheet::Grid& grid, int row, const dao::Field& field) {
    if (field.isNull()) return;
    const dao::Value value = field.value();
    const std::optional<double> number = numberOf(value);
    if (!number) throw basic::RuntimeError(basic::TypeMismatch);
    if (*number == 0)
        grid.setText(row, sheet::Center, "0");
    else if (*number > 0)
        grid.setText(row, sheet::Right, dao::toText(value));
    else if (const auto* single = std::get_if<float>(&value))
        grid.setText(row, sheet::Left, basic::text(-*single));
    else
        grid.setText(row, sheet::Left, basic::text(-*number));
}

/// The text of a level or a height as the book shows it.
std::string levelText(const dao::Field& field) {
    std::string text = field.text();
    if (text.empty() || (field.Type() == dao::DataType::Text && isLevelText(text))) return text;
    const std::optional<double> number = numberOf(field.value());
    return number ? sheet::levelText(*number) : text;
}

void showRecord(Fields& fields, sheet::Book& book, int row) {
    sheet::Grid& grid = book.MSFG;
    grid.setText(row, sheet::Chainage, mdlTools::cleanChainage(fields[Fields::Chn].text()));
    showOffset(grid, row, fields[Fields::Oft]);
    for (const auto [name, col] : cellFields) {
        const bool level = name == Fields::HI || name == Fields::rl;
        grid.setText(row, col, level ? levelText(fields[name]) : fields[name].text());
    }
    if (!fields[Fields::HI].isNull()) {
        const std::optional<double> height = numberOf(mdlTools::SafeFieldValue(fields[Fields::HI]));
        if (height) book.CurrentHI = basic::cSng(*height);
    }
}

/// The records that are there. The count in the definition of a table is often wrong, and a record that it
/// does not count is a row of the book all the same. One that cannot be read is counted as the last, so that
/// reading on to it says what is wrong.
std::int32_t countRecords(dao::Recordset& grl) {
    try {
        return grl.RecordsThere();
    } catch (const basic::RuntimeError&) { // NOLINT(bugprone-empty-catch): then as far as they can be read
    }
    std::int32_t count = 0;
    try {
        for (; !grl.EOF_(); grl.MoveNext())
            ++count;
    } catch (const basic::RuntimeError&) {
        return std::max(count + 1, grl.RecordCount());
    }
    return count;
}

} // namespace

Refused writeRows(sheet::Book& book, desktop::Desktop& desktop, std::string_view path) {
    sheet::Grid& grid = book.MSFG;
    dao::Database database = dao::OpenDatabase(basic::nativePath(path), connect);
    dao::Recordset grl = database.OpenRecordset(table);
    const sheet::LongWork work(grid, desktop);
    if (!grl.EOF_()) {
        database.Execute(std::string("Delete * From ") +
                         table); // record by record it costs as much as the writing
        desktop.setProgress(100);
    }
    RowWriter writer(grl, grid);
    for (int row = 1; row < grid.Rows(); ++row) {
        writer.write(row);
        desktop.setProgress(static_cast<float>(row) * 100 / static_cast<float>(grid.Rows()));
    }
    Refused refused = writer.refused();
    refused.heading = !writeHeading(database, book.JobHeading);
    database.Close();
    return refused;
}

GrlReader::GrlReader(std::string_view path)
    : m_database(dao::OpenDatabase(basic::nativePath(path), connect)),
      m_grl(m_database.OpenRecordset(table)),
      m_stated(m_grl.RecordCount()),
      m_count(countRecords(m_grl)) {
    if (m_count > mostRows)
        throw basic::RuntimeError(basic::OutOfMemory, "The file has " + std::to_string(m_count) +
                                                          " rows; a book takes " + std::to_string(mostRows) +
                                                          " at most");
}

std::string GrlReader::note() const {
    if (m_count == m_stated) return {};
    return "The file counts " + std::to_string(m_stated) + " rows and holds " + std::to_string(m_count) +
           "; all were read, and the next save counts them right.";
}

void GrlReader::fill(sheet::Book& book, desktop::Desktop& desktop, int firstRow) {
    // No guard here: after an error the grid stays hidden and the bar shown, until Open shows the grid again.
    desktop.showProgress();
    book.MSFG.setVisible(false);
    Fields fields(m_grl);
    m_grl.MoveFirst();
    for (std::int32_t k = 0; k < m_count; ++k) {
        showRecord(fields, book, firstRow + k);
        desktop.setProgress(m_grl.PercentPosition());
        m_grl.MoveNext();
    }
    // Cell by cell the cursor came to the last one; the Down key that follows leaves it there.
    book.MSFG.moveTo(firstRow + m_count - 1, sheet::Remark);
    book.MSFG.setVisible(true);
    desktop.hideProgress();
    desktop.focusGrid();
}

} // namespace project
