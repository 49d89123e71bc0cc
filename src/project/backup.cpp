#include "backup.h"

#include "basic/files.h"
#include "marks.h"

namespace project {

bool backUp(const sheet::Book& book, Report& report) {
    const std::string path = book.projectPath();
    const bool foreign = !book.FileMark.empty() && basic::fileExists(path) && fileMark(path) != book.FileMark;
    const bool kept =
        report.attempt("No backup was made", [&] { basic::fileCopy(path, path + ".bak"); }).empty();
    if (foreign && kept)
        report.add("Another program changed the file; its version is kept as " + path + ".bak.");
    if (foreign && !kept) report.add("Another program changed the file, so the book was not saved over it.");
    return kept || !foreign;
}

} // namespace project
