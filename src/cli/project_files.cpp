#include "project_files.h"

#include "book_csv.h"
#include "stream_desktop.h"

#include "exchange/csv_export.h"
#include "project/program_folder.h"
#include "project/project_commands.h"
#include "project/project_file.h"
#include "sheet/arithmetic_check.h"
#include "sheet/book.h"
#include "sheet/reduction.h"

#include "basic/files.h"

#include <istream>
#include <iterator>
#include <ostream>

namespace cli {
namespace {

bool load(sheet::Book& book, StreamDesktop& desktop, const std::string& path) {
    book.FileName = path;
    return project::op(book, desktop);
}

ExitStatus failed(std::ostream& err, const std::string& path, const basic::RuntimeError& error) {
    err << "zavrogrl-cli: " << path << ": " << error.description() << '\n';
    return Failed;
}

} // namespace

ExitStatus calProject(const std::string& path, std::ostream& err) {
    StreamDesktop desktop(err);
    sheet::Book book;
    if (!load(book, desktop, path)) return Failed;
    sheet::reduceLevels(book, desktop);
    // The reduction leaves the grid hidden when it stops in an error.
    if (!book.MSFG.Visible()) return Failed;
    if (!project::rewriteProject(book, desktop)) return Failed;
    desktop.status(sheet::describe(sheet::checkArithmetic(book.MSFG)));
    return Done;
}

ExitStatus exportProject(const std::string& path, const std::string& out, std::ostream& standardOut,
                         std::ostream& err) {
    StreamDesktop desktop(err);
    sheet::Book book;
    if (!load(book, desktop, path)) return Failed;
    try {
        const std::string csv = exchange::csvText(book.MSFG);
        if (out != "-")
            basic::writeFile(out.empty() ? path.substr(0, path.size() - 3) + "csv" : out, csv);
        else if (!(standardOut << csv).flush())
            throw basic::RuntimeError(basic::DeviceIoError);
        return Done;
    } catch (const basic::RuntimeError& error) {
        return failed(err, out.empty() ? path : out, error);
    }
}

ExitStatus newProject(const std::string& path, const std::string& from, std::istream& in, std::ostream& err) {
    StreamDesktop desktop(err);
    sheet::Book book;
    try {
        readBook(book.MSFG, from == "-" ? basic::toUtf8(std::string(std::istreambuf_iterator<char>(in), {}))
                                        : basic::readFile(from));
    } catch (const basic::RuntimeError& error) {
        return failed(err, from, error);
    }
    desktop.status(project::prepareProgramFolder(desktop.programFolder(), project::shippedFolder()));
    return project::makeProject(book, desktop, path) ? Done : Failed;
}

} // namespace cli
