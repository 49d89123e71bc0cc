#include "levels_command.h"

#include "book_file.h"
#include "json_text.h"

#include "basic/files.h"
#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "sheet/cells.h"
#include "survey/rise_and_fall.h"

#include <algorithm>
#include <ostream>

namespace cli {
namespace {

using survey::Runs;
using survey::RunSection;
using survey::Verdict;

constexpr auto oneDecimal = basic::pattern("0.0");
constexpr auto twoDecimals = basic::pattern("0.00");
constexpr auto levelDigits = basic::pattern("0.000##"); // of a digital level

std::string pointText(const std::string& name, int row) {
    const std::string number = "row " + std::to_string(row);
    return name.empty() ? number : name + " (" + number + ')';
}

std::string lengthText(const RunSection& section) {
    if (!section.lengthKm) return {};
    const char* source =
        section.lengthSource == survey::LengthSource::Typed ? " km as given" : " km by the chainages";
    return ", " + basic::format(*section.lengthKm, basic::pattern("0.0##")) + source;
}

std::string sectionText(const RunSection& section) {
    std::string text = pointText(section.from, section.fromRow) + " to " +
                       pointText(section.to, section.toRow) + ": " + std::to_string(section.setups) +
                       (section.setups == 1 ? " set-up" : " set-ups") + lengthText(section) + ", found " +
                       basic::format(section.found, levelDigits);
    if (section.known) text += ", known " + basic::format(*section.known, levelDigits);
    if (section.misclosureMm) {
        text += ", misclosure " + basic::format(*section.misclosureMm, oneDecimal) + " mm";
        if (section.setups > 1)
            text += " (" + basic::format(*section.misclosurePerSetup(), twoDecimals) + " mm a set-up)";
    }
    return text + "\n  " + describe(section) + '\n';
}

std::string numberOrNull(const std::optional<double>& value, basic::Pattern form) {
    return value ? basic::format(*value, form) : "null";
}

std::string sectionJson(const RunSection& section) {
    std::string json = R"({"from": )";
    appendJsonText(json, section.from);
    json += R"(, "to": )";
    appendJsonText(json, section.to);
    json += R"(, "fromRow": )" + std::to_string(section.fromRow);
    json += R"(, "toRow": )" + std::to_string(section.toRow);
    json += R"(, "setups": )" + std::to_string(section.setups);
    json += R"(, "lengthKm": )" + numberOrNull(section.lengthKm, basic::pattern("0.0#####"));
    json += std::string(R"(, "lengthSource": ")") + word(section.lengthSource) + '"';
    json += R"(, "found": )" + basic::format(section.found, levelDigits);
    json += R"(, "known": )" + numberOrNull(section.known, levelDigits);
    json += R"(, "misclosureMm": )" + numberOrNull(section.misclosureMm, twoDecimals);
    json += R"(, "allowedMm": )" + numberOrNull(section.allowed.millimetres, twoDecimals);
    json += std::string(R"(, "verdict": ")") + word(section.verdict) + "\"}";
    return json;
}

std::string allJson(const std::vector<RunSection>& sections) {
    std::string json = "[";
    for (const RunSection& section : sections)
        json += (json.size() > 1 ? ",\n " : "") + sectionJson(section);
    return json + "]\n";
}

/// One line a row of the book, empty where there is nothing.
std::string rowsCsv(const sheet::Grid& grid, Runs& runs, bool riseAndFall) {
    std::string csv = "Row,R.Level.,Correction mm,Adjusted";
    csv += riseAndFall ? ",Rise,Fall\r\n" : "\r\n";
    for (int row = 1; row < grid.Rows(); ++row) {
        csv += std::to_string(row) + ',';
        if (const auto level = runs.levelAt(row))
            csv += sheet::levelText(level->raw) + ',' + basic::format(level->correction * 1000, twoDecimals) +
                   ',' + sheet::levelText(level->adjusted());
        else if (runs.reading(row).kind == sheet::RowKind::None &&
                 basic::isNumber(grid.Text(row, sheet::RLevel)))
            csv += sheet::levelText(sheet::cellValue(grid, row, sheet::RLevel)) + ",,";
        else
            csv += ",,";
        if (riseAndFall) {
            const auto rise = survey::riseAt(runs, row);
            csv += !rise       ? ",,"
                   : *rise > 0 ? ',' + sheet::levelText(*rise) + ','
                               : ",," + sheet::levelText(-*rise);
        }
        csv += "\r\n";
    }
    return csv;
}

/// What the sections alone do not tell.
void sayNotes(Runs& runs, std::ostream& err) {
    for (const survey::Contradiction& each : runs.contradictions())
        err << "row " << each.row << ": " << (each.name.empty() ? "known level" : each.name) << " = "
            << basic::format(each.level, levelDigits) << " contradicts "
            << basic::format(each.firstLevel, levelDigits) << " in row " << each.firstRow
            << ", which holds\n";
    const bool elsewise =
        runs.closing().method == survey::Method::Distance &&
        std::ranges::any_of(runs.sections(), [](const RunSection& section) {
            return section.misclosureMm && section.verdict != Verdict::Check && !section.byDistance;
        });
    if (elsewise) err << "Adjusted by set-ups where the chainages give no distances\n";
    if (runs.stoppedAt() > 0)
        err << "row " << runs.stoppedAt() << ": a text that is no number; the run stops there\n";
}

ExitStatus wrongUse(std::ostream& err, const std::string& what) {
    err << "zavrogrl-cli: " << what << '\n';
    return WrongUsage;
}

} // namespace

std::optional<std::pair<int, double>> knownRowFrom(std::string_view text) {
    const std::size_t sign = text.find('=');
    if (sign == std::string_view::npos) return std::nullopt;
    const std::string_view row = text.substr(0, sign);
    const std::string_view level = text.substr(sign + 1);
    constexpr std::size_t mostDigits = 7;
    const bool counts = !row.empty() && row.size() <= mostDigits &&
                        std::ranges::all_of(row, [](char c) { return c >= '0' && c <= '9'; });
    if (!counts || level.size() > 30 || !basic::isNumber(level)) return std::nullopt;
    try {
        return std::pair(basic::cLng(basic::val(row)), basic::val(level));
    } catch (const basic::RuntimeError&) {
        return std::nullopt;
    }
}

ExitStatus levels(const LevelsOptions& options, std::istream& in, std::ostream& out, std::ostream& err) {
    project::Book book;
    if (!loadBook(book, options.book, in, err)) return Failed;
    const sheet::Grid& grid = book.MSFG;
    survey::Closing closing = options.closing;
    if (options.length) closing.lengthsKm = {*options.length};
    Runs runs(grid, closing);
    for (const auto& [row, level] : closing.known)
        if (row < 1 || row >= grid.Rows() || runs.reading(row).kind == sheet::RowKind::None)
            return wrongUse(err, "--known " + std::to_string(row) + ": nothing was sighted in that row");
    const auto& sections = runs.sections();
    const auto closable = std::ranges::count_if(sections, [](const RunSection& section) {
        return section.misclosureMm && section.verdict != Verdict::Check;
    });
    if (options.length && closable != 1)
        return wrongUse(err,
                        "--length is for a book of one section; this one has " + std::to_string(closable));

    if (options.json) {
        out << allJson(sections);
    } else {
        for (const RunSection& section : sections)
            out << sectionText(section);
        if (sections.empty()) out << "No known level that anything was sighted from\n";
        if (options.riseAndFall) out << describe(survey::checkRiseAndFall(grid, runs)) << '\n';
    }
    sayNotes(runs, err);
    if (!options.csv.empty()) {
        try {
            basic::writeFile(options.csv, rowsCsv(grid, runs, options.riseAndFall));
        } catch (const basic::RuntimeError& error) {
            return fail(err, options.csv, error);
        }
    }
    const bool fails = std::ranges::any_of(
        sections, [](const RunSection& section) { return section.verdict == Verdict::Fails; });
    return flushed(out, err, fails || runs.stoppedAt() > 0 ? Failed : Done);
}

} // namespace cli
