#include "schema_text.h"

#include "column_words.h"
#include "database.h"
#include "error.h"
#include "text.h"

#include <algorithm>
#include <array>
#include <optional>

namespace jet {

namespace {

constexpr std::array<std::string_view, 4> keywords{"index", "primary", "table", "unique"};

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}
bool endsWord(char c) {
    return isBlank(c) || c == '(' || c == ')' || c == ',';
}

/// Reads one line, word by word; whatever is wrong is raised with the line's number.
class Line {
  public:
    Line(std::string_view text, int number) : m_rest(text), m_number(number) {}

    [[noreturn]] void wrong(const std::string& what) const {
        throw Error(ErrorKind::InvalidDesign, "line " + std::to_string(m_number) + ": " + what);
    }

    [[nodiscard]] bool atEnd() {
        skipBlanks();
        return m_rest.empty() || m_rest.front() == '#';
    }

    bool take(std::string_view keyword) {
        skipBlanks();
        if (!sameName(m_rest.substr(0, keyword.size()), keyword)) return false;
        if (m_rest.size() > keyword.size() && !endsWord(m_rest[keyword.size()])) return false;
        m_rest.remove_prefix(keyword.size());
        return true;
    }

    bool takeMark(char mark) {
        skipBlanks();
        if (m_rest.empty() || m_rest.front() != mark) return false;
        m_rest.remove_prefix(1);
        return true;
    }

    std::string name() {
        if (atEnd()) wrong("a name is missing");
        const bool bracketed = m_rest.front() == '[';
        const std::size_t end = bracketed ? m_rest.find(']') : m_rest.find_first_of(" \t\r(),");
        if (bracketed && end == std::string_view::npos) wrong("a bracket is not closed");
        const std::string_view name = bracketed ? m_rest.substr(1, end - 1) : m_rest.substr(0, end);
        if (name.empty()) wrong("a name is missing");
        m_rest.remove_prefix(std::min(m_rest.size(), bracketed ? end + 1 : name.size()));
        return std::string(name);
    }

    /// A word with the brackets behind it, "Numeric(18, 4)".
    std::string type() {
        skipBlanks();
        std::size_t length = std::min(m_rest.find_first_of(" \t\r("), m_rest.size());
        if (length < m_rest.size() && m_rest[length] == '(')
            length = std::min(m_rest.find(')', length), m_rest.size() - 1) + 1;
        std::string words(m_rest.substr(0, length));
        m_rest.remove_prefix(length);
        return words;
    }

    std::string rest() {
        skipBlanks();
        while (!m_rest.empty() && isBlank(m_rest.back()))
            m_rest.remove_suffix(1);
        return std::string(m_rest);
    }

    void mustEnd() {
        if (!atEnd()) wrong("\"" + rest() + "\" is not understood");
    }

  private:
    void skipBlanks() {
        while (!m_rest.empty() && isBlank(m_rest.front()))
            m_rest.remove_prefix(1);
    }

    std::string_view m_rest;
    int m_number;
};

IndexDesign readIndex(Line& line, IndexKind kind) {
    IndexDesign index;
    index.kind = kind;
    index.name = line.name();
    if (!line.takeMark('(')) line.wrong("the columns of an index stand in brackets");
    do {
        IndexColumn column{line.name(), true};
        if (line.take("desc"))
            column.ascending = false;
        else
            line.take("asc");
        index.columns.push_back(std::move(column));
    } while (line.takeMark(','));
    if (!line.takeMark(')')) line.wrong("the bracket is not closed");
    while (!line.atEnd()) {
        if (line.take("required"))
            index.required = true;
        else if (line.take("ignore-nulls"))
            index.ignoreNulls = true;
        else
            line.mustEnd();
    }
    return index;
}

ColumnDesign readColumn(Line& line) {
    const std::string name = line.name();
    const std::string words = line.type();
    auto column = columnTypeOf(words);
    if (!column) line.wrong("\"" + words + "\" is no column type");
    column->name = name;
    while (!line.atEnd()) {
        if (line.take("required"))
            column->required = true;
        else if (line.take("zero-length"))
            column->allowZeroLength = true;
        else if (line.take("plain"))
            column->compressed = false;
        else
            line.mustEnd();
    }
    return *column;
}

/// One line of a schema.
void readLine(Line& line, Schema& schema) {
    if (line.take("password")) {
        schema.password = line.rest();
        return;
    }
    if (line.take("table")) {
        schema.tables.push_back({line.name(), {}, {}});
        return line.mustEnd();
    }
    if (schema.tables.empty()) line.wrong("a table is wanted first");
    TableDesign& table = schema.tables.back();
    if (line.take("primary")) {
        if (!line.take("key")) line.wrong("\"primary key\" is wanted");
        table.indexes.push_back(readIndex(line, IndexKind::PrimaryKey));
    } else if (line.take("unique")) {
        if (!line.take("index")) line.wrong("\"unique index\" is wanted");
        table.indexes.push_back(readIndex(line, IndexKind::Unique));
    } else if (line.take("index")) {
        table.indexes.push_back(readIndex(line, IndexKind::Plain));
    } else {
        table.columns.push_back(readColumn(line));
    }
}

std::string quoted(const std::string& name) {
    const bool plain = name.find_first_of(" \t(),[#") == std::string::npos &&
                       std::ranges::none_of(keywords, [&](auto word) { return sameName(word, name); });
    return plain ? name : "[" + name + "]";
}

std::string columnText(const ColumnDesign& column) {
    std::string text = "    " + quoted(column.name) + " " + wordsFor(column);
    if (column.required) text += " required";
    if (column.allowZeroLength) text += " zero-length";
    return text + "\n";
}

std::string indexText(const IndexDesign& index) {
    constexpr std::array<std::string_view, 3> kinds{"index ", "unique index ", "primary key "};
    std::string text =
        "    " + std::string(kinds.at(static_cast<std::size_t>(index.kind))) + quoted(index.name);
    std::string separator = " (";
    for (const IndexColumn& column : index.columns) {
        text += separator + quoted(column.name) + (column.ascending ? "" : " desc");
        separator = ", ";
    }
    text += ")";
    if (index.required && index.kind != IndexKind::PrimaryKey) text += " required";
    if (index.ignoreNulls) text += " ignore-nulls";
    return text + "\n";
}

ColumnDesign designOf(const Column& column) {
    ColumnDesign design;
    design.name = column.name;
    design.type = column.type;
    design.size = column.size;
    design.autonumber = column.autonumber;
    design.required = column.required;
    design.allowZeroLength = column.allowZeroLength;
    design.precision = column.precision;
    design.scale = column.scale;
    return design;
}

IndexDesign designOf(const IndexInfo& index, const std::vector<Column>& columns) {
    IndexDesign design;
    design.name = index.name;
    design.kind = index.primaryKey ? IndexKind::PrimaryKey
                  : index.unique   ? IndexKind::Unique
                                   : IndexKind::Plain;
    design.required = index.required;
    design.ignoreNulls = index.ignoreNulls;
    for (const IndexInfo::Part& part : index.columns)
        design.columns.push_back({columns.at(static_cast<std::size_t>(part.column)).name, part.ascending});
    return design;
}

} // namespace

Schema parseSchema(std::string_view text) {
    Schema schema;
    for (int number = 1; !text.empty(); ++number) {
        const std::size_t length = std::min(text.find('\n'), text.size());
        Line line(text.substr(0, length), number);
        text.remove_prefix(std::min(length + 1, text.size()));
        if (!line.atEnd()) readLine(line, schema);
    }
    return schema;
}

std::string schemaText(const Schema& schema) {
    std::string text;
    for (const TableDesign& table : schema.tables) {
        if (!text.empty()) text += "\n";
        text += "table " + quoted(table.name) + "\n";
        for (const ColumnDesign& column : table.columns)
            text += columnText(column);
        for (const IndexDesign& index : table.indexes)
            text += indexText(index);
    }
    return text;
}

Schema schemaOf(Database& database) {
    Schema schema;
    for (const std::string& name : database.tableNames()) {
        const Table table = database.table(name);
        TableDesign design{name, {}, {}};
        for (const Column& column : table.columns())
            design.columns.push_back(designOf(column));
        for (const IndexInfo& index : table.indexes())
            if (!index.relation) design.indexes.push_back(designOf(index, table.columns()));
        schema.tables.push_back(std::move(design));
    }
    return schema;
}

void createTables(Database& database, const Schema& schema) {
    for (const TableDesign& table : schema.tables)
        static_cast<void>(database.createTable(table));
}

} // namespace jet
