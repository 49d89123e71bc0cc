#include "project_files.h"

#include "book_file.h"
#include "stream_desktop.h"

#include "exchange/book_csv.h"
#include "exchange/csv_export.h"
#include "project/book.h"
#include "project/load.h"
#include "project/program_folder.h"
#include "project/project_file.h"
#include "project/save.h"
#include "sheet/arithmetic_check.h"
#include "sheet/reduction.h"

#include "basic/files.h"

#include <ostream>

namespace cli {
ExitStatus calProject(const std::string& path, std::ostream& err) {
    StreamDesktop desktop(err);
    project::Book book;
    if (!openProject(book, desktop, path)) return Failed;
    if (sheet::reduceLevels(book, desktop).stopped()) return Failed;
    if (!project::rewriteProject(book, desktop).whole()) return Failed;
    desktop.status(sheet::describe(sheet::checkArithmetic(book.MSFG)));
    desktop.status(book.notices.takeLine().text);
    return Done;
}

ExitStatus exportProject(const std::string& path, const std::string& out, std::ostream& standardOut,
                         std::ostream& err) {
    StreamDesktop desktop(err);
    project::Book book;
    if (!openProject(book, desktop, path)) return Failed;
    try {
        const std::string csv = exchange::csvText(book.MSFG);
        if (out != "-")
            basic::writeFile(out.empty() ? path.substr(0, path.size() - 3) + "csv" : out, csv);
        else
            return flushed(standardOut << csv, err);
        return Done;
    } catch (const basic::RuntimeError& error) {
        return fail(err, path, error);
    }
}

ExitStatus newProject(const std::string& path, const std::string& from, std::istream& in, std::ostream& err) {
    StreamDesktop desktop(err);
    project::Book book;
    try {
        exchange::readBook(book.MSFG, textOf(from, in));
    } catch (const basic::RuntimeError& error) {
        return fail(err, from, error);
    }
    if (book.MSFG.Rows() - 1 > project::mostRows) {
        return fail(err, from,
                    std::to_string(book.MSFG.Rows() - 1) + " rows; a book takes " +
                        std::to_string(project::mostRows) + " at most");
    }
    desktop.status(project::prepareProgramFolder(desktop.programFolder(), project::shippedFolder()));
    return project::makeProject(book, desktop, path).whole() ? Done : Failed;
}

} // namespace cli
