#include "formats.h"
#include "xml.h"

#include "basic/strings.h"

#include <charconv>
#include <cmath>

// OpenDocument spreadsheets: OpenDocument 1.3 part 3, tables (9) and the attributes of cell values (19.383).

namespace tables {
namespace {

constexpr const char* encrypted = "The file is encrypted; save it without a password";

struct ManifestReader : XmlHandler {
    void open(std::string_view name, const Attributes&) override {
        if (name == "encryption-data") throw Unreadable(encrypted);
    }
};

class ContentReader : public XmlHandler {
  public:
    ContentReader(const Wanted& wanted, Writer& out) : m_wanted(wanted), m_out(out) {}

    [[nodiscard]] const std::string& sheet() const { return m_name; }
    [[nodiscard]] int row() const { return m_row; }
    [[nodiscard]] std::size_t sheets() const { return m_sheets; }
    [[nodiscard]] bool found() const { return m_found; }

    void open(std::string_view name, const Attributes& attributes) override {
        ++m_depth;
        if (m_ignored > 0) return;
        if (name == "table") {
            if (m_tableDepth > 0) return ignore(); // a table inside a cell
            startTable(attributes);
        } else if (!m_reading) {
            return;
        } else if (name == "table-row") {
            m_column = 0;
            m_rowRepeats = Attributes::number(attributes.whole("table:number-rows-repeated"), 1);
            m_cells.clear();
        } else if (name == "table-cell" || name == "covered-table-cell") {
            startCell(attributes);
            m_covered = name.front() == 'c';
        } else if (m_cellDepth > 0) {
            openInCell(name, attributes);
        }
    }

    void close(std::string_view name) override {
        const int depth = m_depth--;
        if (m_ignored > 0) {
            if (m_ignored == depth) m_ignored = 0;
            return;
        }
        if (depth == m_tableDepth) {
            m_tableDepth = 0;
            m_reading = false;
        } else if (depth == m_cellDepth) {
            m_cellDepth = 0;
            finishCell();
        } else if (depth == m_textDepth) {
            m_textDepth = 0;
        } else if (m_reading && name == "table-row") {
            finishRow();
        }
    }

    void text(std::string_view piece) override {
        if (m_textDepth > 0 && m_ignored == 0 && m_cell.shown.size() <= longestText) m_cell.shown += piece;
    }

  private:
    struct Placed {
        int column, repeats;
        Cell cell;
    };

    void ignore() { m_ignored = m_depth; }

    void startTable(const Attributes& attributes) {
        m_tableDepth = m_depth;
        const std::string_view name = attributes.whole("table:name");
        m_out.sheet(name);
        m_reading = m_wanted ? !m_found && name == *m_wanted : m_sheets == 0;
        if (m_reading) {
            m_found = true;
            m_out.chosen(m_sheets);
            m_name = name;
        }
        ++m_sheets;
    }

    void startCell(const Attributes& attributes) {
        m_cellDepth = m_depth;
        m_repeats = Attributes::number(attributes.whole("table:number-columns-repeated"), 1);
        m_cell = {};
        m_paragraphs = 0;
        const int rows = Attributes::number(attributes.whole("table:number-rows-spanned"), 1);
        const int columns = Attributes::number(attributes.whole("table:number-columns-spanned"), 1);
        if (rows > 1 || columns > 1) {
            const int row = m_row + 1;
            const int column = m_column + 1;
            if (rows <= mostRows && columns <= mostRows)
                m_out.merged({row, column, row + rows - 1, column + columns - 1});
        }
        const std::string_view type = attributes.whole("office:value-type");
        m_error = attributes.whole("calcext:value-type") == "error";
        m_formula = !attributes.whole("table:formula").empty();
        m_string = attributes.whole("office:string-value");
        if (type == "float" || type == "percentage" || type == "currency")
            takeNumber(attributes.whole("office:value"));
        else if (type == "date" || type == "time")
            m_cell.kind = CellKind::Date;
        else if (type == "boolean")
            m_cell.kind = CellKind::Truth;
        else if (type == "string")
            m_cell.kind = CellKind::Text;
    }

    void takeNumber(std::string_view text) {
        const auto result = std::from_chars(text.data(), text.data() + text.size(), m_cell.number);
        const bool whole = result.ec == std::errc() && result.ptr == text.data() + text.size();
        if (whole && std::isfinite(m_cell.number))
            m_cell.kind = CellKind::Number;
        else
            m_cell.number = 0;
    }

    void openInCell(std::string_view name, const Attributes& attributes) {
        if (m_textDepth == 0) {
            if (name != "p" && name != "h") return ignore(); // a comment, a drawing
            if (m_paragraphs++ > 0) m_cell.shown += '\n';
            m_textDepth = m_depth;
        } else if (name == "s") {
            m_cell.shown.append(
                static_cast<std::size_t>(Attributes::number(attributes.whole("text:c"), 1, 1000)), ' ');
        } else if (name == "tab") {
            m_cell.shown += '\t';
        } else if (name == "line-break") {
            m_cell.shown += '\n';
        } else if (name == "ruby-text") {
            ignore();
        }
    }

    void finishCell() {
        if (m_covered) m_cell = {}; // the sheet does not show it
        // Older programs give an error the value 0.
        const bool showsError = m_cell.kind == CellKind::Number &&
                                (m_cell.shown.starts_with('#') || m_cell.shown.starts_with("Err:"));
        if (m_error || showsError)
            m_cell.kind = CellKind::Error;
        else if (m_cell.kind == CellKind::Text && m_cell.shown.empty())
            m_cell.shown = m_string;
        else if (m_cell.kind == CellKind::Empty && !m_cell.shown.empty())
            m_cell.kind = CellKind::Text; // written without a type
        else if (m_cell.kind == CellKind::Empty && m_formula && !m_covered)
            m_cell.kind = CellKind::NoValue;
        if (m_cell.kind == CellKind::Text && m_cell.shown.empty()) m_cell.kind = CellKind::Empty;
        if (m_cell.kind != CellKind::Empty) m_cells.push_back({m_column + 1, m_repeats, std::move(m_cell)});
        m_column = m_repeats > mostRows - m_column ? mostRows : m_column + m_repeats;
    }

    void finishRow() {
        const int last = m_rowRepeats > mostRows - m_row ? mostRows + 1 : m_row + m_rowRepeats;
        for (int row = m_row + 1; row <= last && !m_cells.empty(); ++row)
            for (const Placed& placed : m_cells)
                for (int k = 0; k < placed.repeats && (k == 0 || placed.column + k <= mostColumns); ++k)
                    m_out.cell(row, placed.column + k, placed.cell);
        m_row = std::min(last, mostRows);
    }

    const Wanted& m_wanted;
    Writer& m_out;
    std::size_t m_sheets = 0;
    std::string m_name;
    bool m_found = false, m_reading = false;
    int m_depth = 0, m_tableDepth = 0, m_cellDepth = 0, m_textDepth = 0, m_ignored = 0;
    int m_row = 0, m_column = 0, m_rowRepeats = 1, m_repeats = 1, m_paragraphs = 0;
    bool m_error = false, m_formula = false, m_covered = false;
    Cell m_cell;
    std::string m_string;
    std::vector<Placed> m_cells;
};

} // namespace

void readOds(Parts& parts, const Wanted& wanted, Writer& out) {
    ManifestReader manifest;
    (void)parseXml(parts, "META-INF/manifest.xml", manifest);
    ContentReader content(wanted, out);
    try {
        if (!parseXml(parts, "content.xml", content)) throw Unreadable("The file holds no tables");
    } catch (const Unreadable& error) {
        if (content.sheet().empty()) throw;
        throw Unreadable("Sheet \"" + content.sheet() + "\", after row " + std::to_string(content.row()) +
                         ": " + error.what());
    }
    if (wanted && !content.found()) throw Unreadable("There is no sheet \"" + *wanted + "\"");
    if (content.sheets() == 0) throw Unreadable("The file holds no tables");
    out.end();
}

} // namespace tables
