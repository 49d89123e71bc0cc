#include "peers.h"

#include "cli/table_dump.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace {

std::string quoted(const std::string& text) {
    std::string result = "'";
    for (char c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), [](FILE*) { return 0; });
    std::string output;
    std::array<char, 1 << 16> buffer{};
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe.get()))
        output.append(buffer.data(), count);
    if (pclose(pipe.get()) != 0) throw std::runtime_error("failed: " + command);
    return output;
}

/// Fields between tabs; a backslash starts \N, \t, \r, \n or \\.
std::vector<Printed> fieldsOf(std::string_view line) {
    std::vector<Printed> fields(1);
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\t') {
            fields.emplace_back();
        } else if (line[i] == '\\' && i + 1 < line.size()) {
            const char c = line[++i];
            if (c == 'N')
                fields.back().null = true;
            else
                fields.back().text += c == 't' ? '\t' : c == 'r' ? '\r' : c == 'n' ? '\n' : c;
        } else {
            fields.back().text += line[i];
        }
    }
    return fields;
}

template <typename See>
void eachLine(std::string_view text, See see) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        see(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::vector<PrintedTable> readWithMdbExport(const std::string& path, const std::vector<std::string>& names) {
    std::vector<PrintedTable> tables;
    for (const std::string& name : names) {
        PrintedTable& table = tables.emplace_back(PrintedTable{name, {}});
        const std::string form = "'%Y-%m-%d %H:%M:%S'";
        eachLine(outputOf("mdb-export -H -Q -e -d '\t' -0 '\\N' -b hex -D " + form + " -T " + form + " " +
                          quoted(path) + " " + quoted(name)),
                 [&](std::string_view line) { table.rows.push_back(fieldsOf(line)); });
    }
    return tables;
}

std::vector<PrintedTable> readWithMdbReader(const std::string& path) {
    std::vector<PrintedTable> tables;
    eachLine(outputOf("node " + quoted(ZAVRO_PEERS_FOLDER "/dump.mjs") + " " + quoted(ZAVRO_NODE_MODULES) +
                      " " + quoted(path)),
             [&](std::string_view line) {
                 if (line.starts_with("T ") && line.find('\t') == std::string_view::npos)
                     tables.push_back({std::string(line.substr(2)), {}});
                 else
                     tables.back().rows.push_back(fieldsOf(line));
             });
    return tables;
}

/// A decimal number without what does not count: "-0012.50" is "-12.5".
std::string decimal(std::string text) {
    const bool negative = text.starts_with('-');
    if (negative) text.erase(0, 1);
    if (text.find('.') != std::string::npos) {
        while (text.ends_with('0'))
            text.pop_back();
        if (text.ends_with('.')) text.pop_back();
    }
    text.erase(0, std::min(text.find_first_not_of('0'), text.size()));
    if (text.empty() || text.starts_with('.')) text.insert(0, "0");
    return negative && text != "0" ? "-" + text : text;
}

std::string digitsOf(std::string text) {
    std::erase_if(text, [](unsigned char c) { return std::isxdigit(c) == 0; });
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

/// The characters that pairs of hex digits stand for.
std::string unhexed(const std::string& hex) {
    std::string text;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        text += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return text;
}

/// Bytes that a memo can have and still surely lie in one piece.
constexpr std::size_t onePiece = 1500;

bool near(const std::string& a, const std::string& b, double precision) {
    const double x = std::strtod(a.c_str(), nullptr);
    const double y = std::strtod(b.c_str(), nullptr);
    return x == y || std::abs(x - y) <= precision * std::max(std::abs(x), std::abs(y));
}

} // namespace

const char* nameOf(Peer peer) {
    return peer == Peer::MdbExport ? "mdb-export" : "mdb-reader";
}

bool installed(Peer peer) {
    if (peer == Peer::MdbReader)
        return std::filesystem::exists(ZAVRO_NODE_MODULES "/mdb-reader") &&
               std::system("node --version >/dev/null 2>&1") == 0;
    return std::system("mdb-export --version >/dev/null 2>&1") == 0;
}

std::vector<PrintedTable> readWith(Peer peer, const std::string& path,
                                   const std::vector<std::string>& tables) {
    return peer == Peer::MdbExport ? readWithMdbExport(path, tables) : readWithMdbReader(path);
}

PrintedRows ourRows(const jet::Table& table) {
    std::ostringstream out;
    cli::dumpTable(table, cli::DumpForm::Csv, out);
    const std::string csv = out.str();
    PrintedRows rows(1, std::vector<Printed>(1, Printed{true, ""}));
    for (std::size_t i = 0; i < csv.size(); ++i) {
        Printed& field = rows.back().back();
        if (csv[i] == ',' || csv[i] == '\n') {
            if (csv[i] == '\n') rows.emplace_back();
            rows.back().push_back({true, ""});
            continue;
        }
        field.null = false;
        if (csv[i] != '"') {
            field.text += csv[i];
            continue;
        }
        for (++i; csv[i] != '"' || csv[i + 1] == '"'; ++i) {
            if (csv[i] == '"') ++i;
            field.text += csv[i];
        }
    }
    rows.pop_back();          // behind the last line end
    rows.erase(rows.begin()); // the header
    return rows;
}

bool same(const jet::Column& column, const Printed& ours, const Printed& theirs, Peer peer) {
    // mdb-reader takes the reference to an OLE value for a number.
    if (column.type == jet::ColumnType::Ole && peer == Peer::MdbReader) return true;
    if (ours.null || theirs.null) {
        // mdb-export prints Null and empty values alike, and our own dump does so for bytes.
        const bool empty = ours.text.empty() && theirs.text.empty();
        const bool bytes = column.type == jet::ColumnType::Binary || column.type == jet::ColumnType::Ole;
        return ours.null == theirs.null || ((peer == Peer::MdbExport || bytes) && empty);
    }
    switch (column.type) {
    case jet::ColumnType::Single:
        return near(ours.text, theirs.text, 1e-7);
    case jet::ColumnType::Double:
        return near(ours.text, theirs.text, 1e-15);
    case jet::ColumnType::Currency:
    case jet::ColumnType::Numeric:
        return decimal(ours.text) == decimal(theirs.text);
    case jet::ColumnType::Memo:
        // mdb-reader takes a piece behind a deleted row for longer than it is and stops there.
        return ours.text == theirs.text || (peer == Peer::MdbReader && ours.text.size() > onePiece);
    case jet::ColumnType::Ole:
    case jet::ColumnType::Binary:
    case jet::ColumnType::FixedBinary:
        return digitsOf(ours.text) == digitsOf(theirs.text);
    case jet::ColumnType::Guid:
        // mdb-export gives the characters of the printed form, with a hyphen less, as it does other bytes.
        return digitsOf(ours.text) == digitsOf(peer == Peer::MdbExport ? unhexed(theirs.text) : theirs.text);
    default:
        return ours.text == theirs.text;
    }
}
