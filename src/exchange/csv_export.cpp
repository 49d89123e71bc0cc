#include "csv_export.h"

#include "csv_line.h"

#include "basic/files.h"
#include "basic/strings.h"
#include "files/folder.h"
#include "sheet/long_work.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace exchange {
namespace {

constexpr const char* byteOrderMark = "\xEF\xBB\xBF";

/// `name` with its last `count` characters replaced. Raises InvalidProcedureCall when it has not so many.
std::string withEnding(const std::string& name, std::size_t count, const char* ending) {
    const std::size_t length = basic::length(name);
    if (length < count) throw basic::RuntimeError(basic::InvalidProcedureCall);
    return std::string(basic::left(name, length - count)) + ending;
}

/// Has `write` make the file at the project's path, its last `count` characters replaced by `ending`, and
/// tells how it went.
void createFile(const project::Book& book, desktop::Desktop& desktop, std::size_t count, const char* ending,
                const std::function<void(const std::string& path)>& write) {
    std::string place;
    try {
        const std::string path = withEnding(book.projectPath(), count, ending);
        place = basic::nativePath(path);
        write(path);
    } catch (const basic::RuntimeError& error) {
        // The reason first: a long path may not fit into the status bar.
        const std::string& reason = error.description();
        desktop.status(place.empty() ? reason : reason + ": " + place + " is not created");
        return;
    }
    // A name without a folder lies in the current folder, which nothing else on the screen tells.
    if (!place.starts_with('/')) desktop.status(files::wholePath(place) + " is created");
    desktop.messageBox(place + " File is Created");
}

} // namespace

std::string csvText(const sheet::Grid& grid, const std::function<void(int)>& rowDone) {
    std::string text;
    for (int row = 0; row < grid.Rows(); ++row) {
        appendCsvLine(text, grid, row);
        if (rowDone) rowDone(row + 1);
    }
    // A spreadsheet takes a file with letters beyond ASCII for one of its own code page otherwise.
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (!std::ranges::all_of(text, isAscii)) text.insert(0, byteOrderMark);
    return text;
}

void exportCsv(project::Book& book, desktop::Desktop& desktop) {
    if (book.Caption.size() < std::strlen(project::Book::captionPrefix)) return;
    createFile(book, desktop, std::strlen("grl"), "csv", [&](const std::string& path) {
        sheet::LongWork work(book.MSFG, desktop);
        const int rows = book.MSFG.Rows();
        basic::writeFile(path, csvText(book.MSFG, [&](int done) { work.done(done, rows); }));
    });
}

void exportChangePoints(sheet::Grid& list, const project::Book& book, desktop::Desktop& desktop) {
    createFile(book, desktop, std::strlen(".grl"), "cp.csv", [&](const std::string& path) {
        const sheet::HiddenGrid hidden(list);
        basic::writeFile(path, csvText(list));
    });
}

} // namespace exchange
