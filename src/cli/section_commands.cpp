#include "section_commands.h"

#include "book_file.h"

#include "basic/files.h"
#include "basic/numbers.h"
#include "drawing/figures.h"
#include "exchange/landxml.h"

#include <cmath>
#include <ostream>

namespace cli {
namespace {

ExitStatus send(const std::string& book, const std::string& path, const exchange::SectionExporter& exporter,
                std::istream& in, std::ostream& err) {
    project::Book loaded;
    if (!loadBook(loaded, book, in, err)) return Failed;
    survey::Sections sections(loaded.MSFG);
    const exchange::SectionExport sent = exchange::exportSections(sections, exporter, path);
    err << (sent.done() ? "" : "zavrogrl-cli: ") << exchange::describe(sent, path) << '\n';
    return sent.done() ? Done : Failed;
}

/// The name of the book's file without its ending.
std::string roadOf(const std::string& book) {
    const std::string name = basic::baseName(book);
    return name.substr(0, name.find_last_of('.'));
}

} // namespace

ExitStatus printSections(const std::string& book, bool json, std::istream& in, std::ostream& out,
                         std::ostream& err) {
    project::Book loaded;
    if (!loadBook(loaded, book, in, err)) return Failed;
    survey::Sections sections(loaded.MSFG);
    const char* divider = json ? "[\n" : "";
    for (const survey::GroundPoint& point : sections.points()) {
        const char side = point.offset < 0 ? 'L' : point.offset > 0 ? 'R' : 'C';
        const std::string offset = basic::plainText(std::abs(point.offset));
        const std::string level = basic::plainText(point.level);
        if (json)
            out << divider << R"({"chainage": )" << basic::plainText(point.chainage) << R"(, "side": ")"
                << side << R"(", "offset": )" << offset << R"(, "level": )" << level << R"(, "row": )"
                << point.row << '}';
        else
            out << drawing::chainageText(point.chainage) << ' ' << side << ' ' << offset << ' ' << level
                << ' ' << point.row << '\n';
        if (json) divider = ",\n";
    }
    if (json) out << (sections.points().empty() ? "[]\n" : "\n]\n");
    if (flushed(out, err) != Done) return Failed;
    if (sections.rowsWithoutLevel() == 0) return Done;
    err << "zavrogrl-cli: Cal first: " << sections.rowsWithoutLevel() << " readings have no level\n";
    return sections.points().empty() ? Failed : Done;
}

ExitStatus writeDxf(const std::string& book, const std::string& path, exchange::DxfOptions options,
                    std::istream& in, std::ostream& err) {
    options.title = roadOf(book);
    return send(book, path, exchange::DxfExporter(std::move(options)), in, err);
}

ExitStatus writeLandXml(const std::string& book, const std::string& path, const std::string& road,
                        std::istream& in, std::ostream& err) {
    return send(
        book, path,
        exchange::LandXmlExporter({road.empty() ? roadOf(book) : road, std::chrono::system_clock::now()}), in,
        err);
}

} // namespace cli
