#include "formats.h"
#include "number_format.h"
#include "xml.h"

#include "basic/numbers.h"
#include "basic/strings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <map>

// Office Open XML workbooks: ECMA-376 part 1, SpreadsheetML (18).

namespace tables {
namespace {

constexpr std::size_t mostSharedText = std::size_t{256} << 20;
constexpr std::size_t mostStyles = 65'536;

using Relations = std::map<std::string, std::string, std::less<>>; ///< target by id or by the end of its type

/// The part that `target` names in the relations of a part in `folder`.
std::string partName(std::string_view folder, std::string_view target) {
    if (target.starts_with('/')) return std::string(target.substr(1));
    while (target.starts_with("../")) {
        target.remove_prefix(3);
        const std::size_t slash = folder.substr(0, folder.empty() ? 0 : folder.size() - 1).rfind('/');
        folder = folder.substr(0, slash == std::string_view::npos ? 0 : slash + 1);
    }
    return std::string(folder) += target;
}

struct RelationReader : XmlHandler {
    std::string folder;
    Relations byId, byType;

    void open(std::string_view name, const Attributes& attributes) override {
        if (name != "Relationship") return;
        const std::string part = partName(folder, attributes.local("Target"));
        byId.emplace(attributes.local("Id"), part);
        const std::string_view type = attributes.local("Type");
        byType.emplace(type.substr(type.rfind('/') + 1), part);
    }
};

struct SheetName {
    std::string name, relation;
};

struct WorkbookReader : XmlHandler {
    std::vector<SheetName> sheets;
    std::size_t active = 0;
    bool epoch1904 = false;

    void open(std::string_view name, const Attributes& attributes) override {
        if (name == "sheet" && sheets.size() < 10'000)
            sheets.push_back({std::string(attributes.local("name")), std::string(attributes.local("id"))});
        if (name == "workbookView")
            active = static_cast<std::size_t>(Attributes::number(attributes.local("activeTab"), 0));
        if (name == "workbookPr") {
            const std::string_view flag = attributes.local("date1904");
            epoch1904 = flag == "1" || flag == "true";
        }
    }
};

/// The number format of each cell style.
struct StyleReader : XmlHandler {
    std::map<int, NumberFormat> formats;
    std::vector<NumberFormat> styles;
    bool inCells = false;

    void open(std::string_view name, const Attributes& attributes) override {
        if (name == "numFmt" && formats.size() < mostStyles)
            formats.insert_or_assign(Attributes::number(attributes.local("numFmtId"), -1),
                                     NumberFormat(attributes.local("formatCode")));
        if (name == "cellXfs") inCells = true;
        if (name != "xf" || !inCells || styles.size() >= mostStyles) return;
        const int id = Attributes::number(attributes.local("numFmtId"), 0);
        const auto own = formats.find(id);
        styles.push_back(own != formats.end() ? own->second : NumberFormat::builtIn(id));
    }
    void close(std::string_view name) override {
        if (name == "cellXfs") inCells = false;
    }
};

/// Text made of runs (t), without the reading aids of Asian scripts (rPh).
class RunText {
  public:
    std::string value;

    void open(std::string_view name) {
        if (name == "rPh") m_aid = true;
        if (name == "t") m_inText = !m_aid;
    }
    void close(std::string_view name) {
        if (name == "rPh") m_aid = false;
        if (name == "t") m_inText = false;
    }
    void text(std::string_view piece) {
        if (m_inText) value += piece;
    }

  private:
    bool m_aid = false, m_inText = false;
};

struct SharedReader : XmlHandler {
    std::vector<std::string> texts;
    RunText run;
    std::size_t size = 0;

    void open(std::string_view name, const Attributes&) override {
        if (name == "si") run.value.clear();
        run.open(name);
    }
    void close(std::string_view name) override {
        run.close(name);
        if (name != "si") return;
        size += run.value.size() + sizeof(std::string);
        if (size > mostSharedText) throw Unreadable("The workbook holds more than 256 MB of texts");
        texts.push_back(run.value);
    }
    void text(std::string_view piece) override { run.text(piece); }
};

/// "AB12" as column and row, from 1; 0 for what is missing. False when it is no such address.
bool parseAddress(std::string_view text, int& column, int& row) {
    column = 0;
    while (!text.empty() && text.front() >= 'A' && text.front() <= 'Z' && column < 100'000) {
        column = column * 26 + (text.front() - 'A' + 1);
        text.remove_prefix(1);
    }
    row = Attributes::number(text, 0);
    return column > 0 && row > 0;
}

class SheetReader : public XmlHandler {
  public:
    SheetReader(const WorkbookReader& workbook, const StyleReader& styles, const SharedReader& shared,
                Writer& out)
        : m_workbook(workbook), m_styles(styles), m_shared(shared), m_out(out) {}

    [[nodiscard]] int row() const { return m_row; }

    void open(std::string_view name, const Attributes& attributes) override {
        if (name == "row") {
            m_row = Attributes::number(attributes.local("r"), m_row + 1);
            m_column = 0;
        } else if (name == "c") {
            startCell(attributes);
        } else if (name == "mergeCell") {
            merge(attributes.local("ref"));
        } else if (m_inCell) {
            if (name == "f") m_hasFormula = true;
            m_inValue = name == "v";
            m_hasValue = m_hasValue || m_inValue || name == "is";
            m_inline.open(name);
        }
    }
    void close(std::string_view name) override {
        m_inValue = false;
        if (m_inCell) m_inline.close(name);
        if (name == "c") finishCell();
    }
    void text(std::string_view piece) override {
        if (m_inValue) m_value += piece;
        if (m_inCell) m_inline.text(piece);
    }

  private:
    void startCell(const Attributes& attributes) {
        ++m_column;
        if (int column = 0, row = 0; parseAddress(attributes.local("r"), column, row)) {
            m_column = column;
            m_row = row;
        }
        m_type = attributes.local("t");
        m_style = static_cast<std::size_t>(Attributes::number(attributes.local("s"), 0));
        m_value.clear();
        m_inline.value.clear();
        m_inCell = true;
        m_hasFormula = m_hasValue = false;
    }

    void finishCell() {
        m_inCell = false;
        Cell cell;
        if (m_hasFormula && !m_hasValue)
            cell.kind = CellKind::NoValue;
        else if (m_type == "s")
            takeShared(cell);
        else if (m_type == "inlineStr")
            cell = {CellKind::Text, 0, m_inline.value};
        else if (m_type == "str")
            cell = {CellKind::Text, 0, m_value};
        else if (m_type == "b")
            cell = {CellKind::Truth, 0, m_value == "0" ? "FALSE" : "TRUE"};
        else if (m_type == "e")
            cell = {CellKind::Error, 0, m_value};
        else if (m_type == "d")
            cell = {CellKind::Date, 0, m_value};
        else
            takeNumber(cell);
        if (cell.kind == CellKind::Text && cell.shown.empty()) cell.kind = CellKind::Empty;
        if (cell.kind != CellKind::Empty) m_out.cell(m_row, m_column, cell);
    }

    void takeShared(Cell& cell) const {
        const auto index = static_cast<std::size_t>(Attributes::number(basic::trim(m_value), 0x7FFFFFFF));
        if (index < m_shared.texts.size())
            cell = {CellKind::Text, 0, m_shared.texts[index]};
        else
            cell = {CellKind::Error, 0, "(a text that the file does not hold)"};
    }

    void takeNumber(Cell& cell) const {
        const std::string_view text = basic::trim(m_value);
        if (text.empty()) return;
        double value = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
        if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isfinite(value)) {
            cell = {CellKind::Text, 0, m_value};
            return;
        }
        static const NumberFormat general;
        const NumberFormat& format = m_style < m_styles.styles.size() ? m_styles.styles[m_style] : general;
        if (format.isDate())
            cell = {CellKind::Date, 0, format.show(value, m_workbook.epoch1904)};
        else
            cell = {CellKind::Number, value, format.show(value)};
    }

    void merge(std::string_view range) {
        const std::size_t colon = range.find(':');
        Merged cells;
        if (colon != std::string_view::npos &&
            parseAddress(range.substr(0, colon), cells.firstCol, cells.firstRow) &&
            parseAddress(range.substr(colon + 1), cells.lastCol, cells.lastRow))
            m_out.merged(cells);
    }

    const WorkbookReader& m_workbook;
    const StyleReader& m_styles;
    const SharedReader& m_shared;
    Writer& m_out;
    int m_row = 0, m_column = 0;
    bool m_inCell = false, m_inValue = false, m_hasFormula = false, m_hasValue = false;
    std::string m_type, m_value;
    std::size_t m_style = 0;
    RunText m_inline;
};

RelationReader relationsOf(Parts& parts, const std::string& part) {
    RelationReader relations;
    const std::size_t slash = part.rfind('/');
    relations.folder = slash == std::string::npos ? "" : part.substr(0, slash + 1);
    (void)parseXml(parts, relations.folder + "_rels/" + part.substr(relations.folder.size()) + ".rels",
                   relations);
    return relations;
}

std::string find(const Relations& relations, std::string_view key, std::string_view otherwise) {
    const auto found = relations.find(key);
    return std::string(found == relations.end() ? otherwise : found->second);
}

} // namespace

void readXlsx(Parts& parts, const Wanted& wanted, Writer& out) {
    const std::string bookPart = find(relationsOf(parts, "").byType, "officeDocument", "xl/workbook.xml");
    WorkbookReader workbook;
    if (!parseXml(parts, bookPart, workbook) || workbook.sheets.empty())
        throw Unreadable("The file holds no workbook");
    for (const SheetName& sheet : workbook.sheets)
        out.sheet(sheet.name);
    std::size_t chosen = workbook.active < workbook.sheets.size() ? workbook.active : 0;
    if (wanted) {
        const auto found = std::ranges::find(workbook.sheets, *wanted, &SheetName::name);
        if (found == workbook.sheets.end()) throw Unreadable("There is no sheet \"" + *wanted + "\"");
        chosen = static_cast<std::size_t>(found - workbook.sheets.begin());
    }
    out.chosen(chosen);
    const RelationReader relations = relationsOf(parts, bookPart);
    StyleReader styles;
    (void)parseXml(parts, find(relations.byType, "styles", "xl/styles.xml"), styles);
    SharedReader shared;
    (void)parseXml(parts, find(relations.byType, "sharedStrings", "xl/sharedStrings.xml"), shared);
    const SheetName& sheet = workbook.sheets[chosen];
    SheetReader reader(workbook, styles, shared, out);
    try {
        if (!parseXml(parts, find(relations.byId, sheet.relation, ""), reader))
            throw Unreadable("its content is missing");
    } catch (const Unreadable& error) {
        throw Unreadable("Sheet \"" + sheet.name + "\", at row " + std::to_string(reader.row()) + ": " +
                         error.what());
    }
    out.end();
}

} // namespace tables
