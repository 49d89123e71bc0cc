#include "search.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"

#include <limits>

namespace sheet {
namespace {

/// Whether a cell's text is what is wanted; prepared once for all cells.
class Matcher {
  public:
    explicit Matcher(const Wanted& wanted)
        : m_text(basic::lower(wanted.text)), m_whole(wanted.whole), m_number(basic::isNumber(wanted.text)) {
        if (m_number) m_value = valueOf(wanted.text);
    }

    bool operator()(const std::string& cell) const {
        if (cell.empty()) return false;
        const std::string text = basic::lower(cell);
        if (!m_whole) return text.find(m_text) != std::string::npos;
        return text == m_text || (m_number && basic::isNumber(cell) && valueOf(cell) == m_value);
    }

  private:
    static double valueOf(const std::string& number) {
        try {
            return basic::val(number);
        } catch (const basic::RuntimeError&) { // beyond all range: found by its text alone
            return std::numeric_limits<double>::quiet_NaN();
        }
    }

    std::string m_text;
    bool m_whole;
    bool m_number;
    double m_value = 0;
};

} // namespace

std::optional<Hit> find(const Grid& grid, const Wanted& wanted, int row, int col) {
    if (wanted.text.empty()) return std::nullopt;
    const Matcher matches(wanted);
    const int first = wanted.col < 0 ? 0 : wanted.col;
    const int cols = wanted.col < 0 ? grid.Cols() : 1;
    const int cells = (grid.Rows() - 1) * cols;
    // Cells counted from the top: of the place where the search starts, which may lie beside the column.
    int start = (row - 1) * cols + (wanted.col < 0 ? col : 0);
    if (wanted.col >= 0 && !wanted.backwards && col < wanted.col) --start;
    if (wanted.col >= 0 && wanted.backwards && col > wanted.col) ++start;
    for (int step = 1; step <= cells; ++step) {
        const int place = wanted.backwards ? start - step : start + step;
        const int at = (place % cells + cells) % cells;
        const int hitRow = at / cols + 1;
        const int hitCol = first + at % cols;
        if (matches(grid.Text(hitRow, hitCol))) return Hit{hitRow, hitCol, place < 0 || place >= cells};
    }
    return std::nullopt;
}

} // namespace sheet
