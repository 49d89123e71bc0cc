#include "import_command.h"

#include "stream_desktop.h"

#include "basic/files.h"
#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "exchange/book_csv.h"
#include "exchange/digital_levels.h"
#include "exchange/table_import.h"
#include "project/program_folder.h"
#include "project/project_file.h"
#include "project/save.h"
#include "tables/table_file.h"

#include <algorithm>
#include <ostream>

namespace cli {
namespace {

using exchange::ColumnKind;
using exchange::LevelLine;

constexpr std::size_t sampleBytes = 4096; // tell a file of a digital level

/// Wrong use of an option; the text says how.
struct Misuse {
    std::string text;
};

std::string inQuotes(std::string_view text) {
    return '"' + std::string(text) + '"';
}

int columnNumber(std::string_view name) {
    int number = 0;
    for (const char c : basic::upper(name)) {
        if (c < 'A' || c > 'Z' || number > tables::mostColumns) return 0;
        number = number * 26 + (c - 'A' + 1);
    }
    return number <= tables::mostColumns ? number : 0;
}

void applyColumns(std::string_view columns, exchange::Layout& layout) {
    std::ranges::fill(layout.columns, ColumnKind::Nothing);
    while (!columns.empty()) {
        const std::size_t comma = std::min(columns.find(','), columns.size());
        const std::string_view part = basic::trim(columns.substr(0, comma));
        columns.remove_prefix(std::min(comma + 1, columns.size()));
        const std::size_t equals = part.find('=');
        const int column = columnNumber(basic::trim(part.substr(0, equals)));
        const auto kind = equals == std::string_view::npos
                              ? std::nullopt
                              : exchange::columnKindOf(basic::trim(part.substr(equals + 1)));
        if (column == 0 || !kind) throw Misuse{"--columns: " + inQuotes(part) + " is not COLUMN=KIND"};
        const auto index = static_cast<std::size_t>(column - 1);
        if (index >= layout.columns.size())
            throw Misuse{"--columns: the sheet has no column " + tables::columnName(column)};
        layout.columns[index] = *kind;
    }
    layout.ownHeadings = false;
}

class Import {
  public:
    Import(const ImportOptions& options, std::ostream& out, std::ostream& err)
        : m_options(options), m_out(out), m_err(err) {}

    ExitStatus run() {
        try {
            const std::string path = basic::nativePath(m_options.file);
            const std::string bytes = basic::readFile(path, sampleBytes);
            return exchange::isLevelFile(bytes) ? takeLevels() : takeTable();
        } catch (const basic::RuntimeError& error) {
            return fail(m_err, m_options.file, error);
        } catch (const tables::Unreadable& error) {
            return fail(m_err, m_options.file, error.what());
        } catch (const Misuse& misuse) {
            m_err << "zavrogrl-cli: " << misuse.text << '\n';
            return WrongUsage;
        }
    }

  private:
    tables::Table readTable(const std::optional<std::string>& sheet) {
        tables::ReadOptions options;
        options.sheet = sheet;
        options.readerProgram = m_options.readerProgram;
        return tables::readTableFile(basic::nativePath(m_options.file), options);
    }

    exchange::Layout layoutOf(const tables::Table& table) const {
        return exchange::guessLayout(table, m_options.heading.value_or(exchange::guessHeadingRow(table)));
    }

    ExitStatus takeTable() {
        if (m_options.line || !m_options.points.empty() || m_options.take)
            throw Misuse{"--line, --points and --take are for files of digital levels"};
        tables::Table table = readTable(m_options.sheet);
        if (m_options.list) return listSheets(std::move(table));
        exchange::Layout layout = layoutOf(table);
        if (!m_options.columns.empty()) applyColumns(m_options.columns, layout);
        const exchange::TakenTable taken = exchange::takeTable(table, layout);
        for (const exchange::ImportNote& note : taken.notes)
            m_err << note.text << '\n';
        const ExitStatus written = write(taken.rows);
        return written == Done && taken.leavesOut() ? Failed : written;
    }

    ExitStatus listSheets(tables::Table table) {
        const std::vector<std::string> names = table.sheets;
        const std::size_t first = table.sheet;
        for (std::size_t k = 0; k < names.size(); ++k) {
            if (m_options.sheet && names[k] != *m_options.sheet) continue;
            if (k != first) table = readTable(names[k]);
            const exchange::Layout layout = layoutOf(table);
            m_out << "sheet " << inQuotes(names[k]) << ", " << table.rows.size() << " rows, heading row "
                  << layout.headingRow << '\n';
            for (std::size_t column = 0; column < layout.columns.size(); ++column)
                m_out << "  " << tables::columnName(static_cast<int>(column) + 1) << ' '
                      << inQuotes(layout.headings[column]) << ": " << exchange::wordOf(layout.columns[column])
                      << '\n';
        }
        return flushed(m_out, m_err);
    }

    ExitStatus takeLevels() {
        if (m_options.sheet || m_options.heading || !m_options.columns.empty())
            throw Misuse{"--sheet, --heading and --columns are for tables"};
        const auto form = exchange::PointForm::parse(m_options.points);
        if (!m_options.points.empty() && !form)
            throw Misuse{"--points: " + inQuotes(m_options.points) + " is no form"};
        const exchange::LevelFile file =
            exchange::readLevelFile(basic::readFile(basic::nativePath(m_options.file)));
        if (m_options.list) return listLines(file);
        for (const std::string& note : file.notes)
            m_err << file.format << ": " << note << '\n';
        const auto count = static_cast<int>(file.lines.size());
        const int number = m_options.line.value_or(1);
        if (number < 1 || number > count)
            throw Misuse{"--line: the file has " + std::to_string(count) + " lines"};
        for (const std::string& stray : file.strays)
            m_err << stray << '\n';
        bool leftOut = !file.strays.empty() && !m_options.line;
        for (int k = 1; k <= count && !m_options.line; ++k) {
            if (k == number) continue;
            leftOut = true;
            m_err << "Line " << k
                  << " left out: " << exchange::describe(file.lines[static_cast<std::size_t>(k - 1)]) << '\n';
        }
        const LevelLine& line = file.lines[static_cast<std::size_t>(number - 1)];
        tell(line);
        if (!line.troubles.empty() && !m_options.take) {
            m_err << "Line " << number << " left out; --take takes it all the same\n";
            return Failed;
        }
        const ExitStatus written = write(exchange::levelRows(line, form.value_or(exchange::PointForm())));
        return written == Done && leftOut ? Failed : written;
    }

    void tell(const LevelLine& line) {
        for (const auto* texts : {&line.troubles, &line.hints})
            for (const std::string& text : *texts)
                m_err << text << '\n';
    }

    ExitStatus listLines(const exchange::LevelFile& file) {
        m_out << file.format << ", " << file.lines.size() << (file.lines.size() == 1 ? " line" : " lines");
        for (const std::string& note : file.notes)
            m_out << "; " << note;
        m_out << '\n';
        const auto level = [](const LevelLine& line) {
            const auto& start = line.points.front().level;
            return start ? basic::format(*start, basic::pattern("#0.000##")) : std::string("no level");
        };
        int number = 0;
        for (const LevelLine& line : file.lines) {
            m_out << ++number << ": line " << line.firstLine << (line.method.empty() ? "" : ", ")
                  << line.method << ", from " << level(line) << ", " << exchange::describe(line) << '\n';
            for (const auto* texts : {&line.troubles, &line.hints})
                for (const std::string& text : *texts)
                    m_out << "   " << text << '\n';
        }
        for (const std::string& stray : file.strays)
            m_out << stray << '\n';
        return flushed(m_out, m_err);
    }

    ExitStatus write(const std::vector<exchange::BookRow>& rows) {
        StreamDesktop desktop(m_err);
        project::Book book;
        if (exchange::importRows(book, desktop, rows, exchange::ImportPlace::Replace) !=
            project::Outcome::Done)
            return Failed;
        if (m_options.out == "-") return flushed(m_out << exchange::writeBook(book.MSFG), m_err);
        if (!basic::lower(m_options.out).ends_with(".grl")) {
            basic::writeFile(m_options.out, exchange::writeBook(book.MSFG));
            return Done;
        }
        desktop.status(project::prepareProgramFolder(desktop.programFolder(), project::shippedFolder()));
        return project::makeProject(book, desktop, m_options.out).whole() ? Done : Failed;
    }

    const ImportOptions& m_options;
    std::ostream& m_out;
    std::ostream& m_err;
};

} // namespace

ExitStatus importFile(const ImportOptions& options, std::ostream& out, std::ostream& err) {
    return Import(options, out, err).run();
}

} // namespace cli
