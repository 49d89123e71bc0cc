#include "check_command.h"

#include "book_file.h"
#include "json_text.h"

#include "survey/findings.h"

#include <algorithm>
#include <ostream>

namespace cli {
namespace {

using survey::Finding;

std::string allJson(const std::vector<Finding>& findings) {
    std::string json = "[";
    for (const Finding& each : findings) {
        if (json.size() > 1) json += ",\n ";
        json += R"({"row": )" + std::to_string(each.row) + R"(, "kind": ")" + word(each.kind) +
                R"(", "rule": ")" + word(each.rule) + R"(", "text": )";
        appendJsonText(json, each.text);
        json += '}';
    }
    return json + "]\n";
}

} // namespace

ExitStatus check(const CheckOptions& options, std::istream& in, std::ostream& out, std::ostream& err) {
    project::Book book;
    sheet::writeHeader(book.MSFG);
    if (!loadBook(book, options.book, in, err)) return Failed;
    survey::Runs runs(book.MSFG);
    survey::Findings findings(book.MSFG, runs, survey::Findings::Cursor::Ignore, options.staff);
    const std::vector<Finding>& all = findings.all();
    if (options.json) {
        out << allJson(all);
    } else {
        for (const Finding& each : all)
            out << "row " << each.row << ": " << word(each.kind) << ": " << each.text << '\n';
    }
    const bool errors =
        std::ranges::any_of(all, [](const Finding& each) { return each.kind == survey::FindingKind::Error; });
    return flushed(out, err, errors ? Failed : Done);
}

} // namespace cli
