#include "project_files.h"

#include "book_csv.h"
#include "stream_desktop.h"

#include "exchange/csv_export.h"
#include "project/load.h"
#include "project/program_folder.h"
#include "project/project_file.h"
#include "project/save.h"
#include "sheet/arithmetic_check.h"
#include "sheet/book.h"
#include "sheet/reduction.h"

#include "basic/files.h"

#include <istream>
#include <iterator>
#include <ostream>

namespace cli {
namespace {

ExitStatus failed(std::ostream& err, const std::string& path, const basic::RuntimeError& error) {
    err << "zavrogrl-cli: " << path << ": " << error.description() << '\n';
    return Failed;
}

} // namespace

ExitStatus calProject(const std::string& path, std::ostream& err) {
    StreamDesktop desktop(err);
    sheet::Book book;
    if (!project::openPath(book, desktop, path)) return Failed;
    if (sheet::reduceLevels(book, desktop).stopped()) return Failed;
    if (!project::rewriteProject(book, desktop).whole()) return Failed;
    desktop.status(sheet::describe(sheet::checkArithmetic(book.MSFG)));
    desktop.status(book.notices.takeLine().text);
    return Done;
}

ExitStatus exportProject(const std::string& path, const std::string& out, std::ostream& standardOut,
                         std::ostream& err) {
    StreamDesktop desktop(err);
    sheet::Book book;
    if (!project::openPath(book, desktop, path)) return Failed;
    try {
        const std::string csv = exchange::csvText(book.MSFG);
        if (out != "-")
            basic::writeFile(out.empty() ? path.substr(0, path.size() - 3) + "csv" : out, csv);
        else if (!(standardOut << csv).flush())
            throw basic::RuntimeError(basic::DeviceIoError);
        return Done;
    } catch (const basic::RuntimeError& error) {
        return failed(err, out.empty() || out == "-" ? path : out, error);
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
    if (book.MSFG.Rows() - 1 > project::mostRows) {
        err << "zavrogrl-cli: " << from << ": " << book.MSFG.Rows() - 1 << " rows; a book takes "
            << project::mostRows << " at most\n";
        return Failed;
    }
    desktop.status(project::prepareProgramFolder(desktop.programFolder(), project::shippedFolder()));
    return project::makeProject(book, desktop, path).whole() ? Done : Failed;
}

} // namespace cli
