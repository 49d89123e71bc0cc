#include "book_csv.h"

#include "csv_line.h"
#include "sheet/book.h"

#include "basic/runtime_error.h"
#include "basic/strings.h"

#include <algorithm>
#include <utility>

namespace exchange {
namespace {

[[noreturn]] void refuse(int line, const char* what) {
    throw basic::RuntimeError(basic::InvalidProcedureCall, "line " + std::to_string(line) + ": " + what);
}

class Reader {
  public:
    explicit Reader(std::string_view text) : m_rest(text) {
        if (m_rest.starts_with("\xEF\xBB\xBF")) m_rest.remove_prefix(3);
    }

    [[nodiscard]] bool atEnd() const { return m_rest.empty(); }
    [[nodiscard]] int line() const { return m_line; }

    bool skipBlankLine() {
        const std::size_t end = lineEnd();
        if (m_rest.substr(0, end).find_first_not_of('\r') != std::string_view::npos) return false;
        endLine(end);
        return true;
    }

    /// The ten fields of the next line.
    std::array<std::string, sheet::columnCount> row() {
        std::array<std::string, sheet::columnCount> fields;
        for (std::size_t col = 0; col + 1 < fields.size(); ++col) {
            fields[col] = quoted();
            const std::size_t end = lineEnd();
            const std::size_t comma = m_rest.substr(0, end).find(',');
            if (comma == std::string_view::npos) {
                fields[col] += takeLine();
                return fields;
            }
            fields[col] += m_rest.substr(0, comma);
            m_rest.remove_prefix(comma + 1);
        }
        std::string& remark = fields.back();
        remark = quoted();
        std::string_view rest = takeLine();
        if (rest.ends_with(',')) rest.remove_suffix(1);
        remark += rest;
        return fields;
    }

  private:
    [[nodiscard]] std::size_t lineEnd() const { return std::min(m_rest.find('\n'), m_rest.size()); }
    void endLine(std::size_t end) {
        m_rest.remove_prefix(std::min(end + 1, m_rest.size()));
        ++m_line;
    }
    std::string_view takeLine() {
        const std::size_t end = lineEnd();
        std::string_view line = m_rest.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        endLine(end);
        return line;
    }
    // The quoted text that the rest begins with; empty when it begins with something else.
    std::string quoted() {
        std::string text;
        if (!m_rest.starts_with('"')) return text;
        const int start = m_line;
        m_rest.remove_prefix(1);
        for (;;) {
            const std::size_t end = m_rest.find('"');
            if (end == std::string_view::npos) refuse(start, "a quoted field has no end");
            text += m_rest.substr(0, end);
            m_line += static_cast<int>(
                std::count(m_rest.begin(), m_rest.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
            m_rest.remove_prefix(end + 1);
            if (!m_rest.starts_with('"')) return text;
            text += '"';
            m_rest.remove_prefix(1);
        }
    }

    std::string_view m_rest;
    int m_line = 1;
};

} // namespace

void readBook(sheet::Grid& grid, std::string_view csv) {
    Reader reader(csv);
    if (reader.atEnd() || !basic::sameText(basic::trim(reader.row().front()), grid.Text(0, sheet::Chainage)))
        refuse(1, "this is not the header of a field book (Chainage,Left,Center,...)");
    grid.setRows(1);
    while (!reader.atEnd()) {
        if (reader.skipBlankLine()) continue;
        auto fields = reader.row();
        const int row = grid.Rows();
        grid.setRows(row + 1);
        for (int col = 0; col < sheet::columnCount; ++col)
            grid.setText(row, col, std::move(fields[static_cast<std::size_t>(col)]));
    }
    grid.setRows(std::max(grid.Rows(), 2));
}

std::string writeBook(const sheet::Grid& grid) {
    std::string csv;
    for (int row = 0; row < grid.Rows(); ++row) {
        for (int col = 0; col < grid.Cols(); ++col) {
            if (col > 0) csv += ',';
            appendCsvField(csv, grid.Text(row, col));
        }
        csv += "\r\n";
    }
    return csv;
}

} // namespace exchange
