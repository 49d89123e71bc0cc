#include "book_file.h"

#include "exit_status.h"
#include "stream_desktop.h"

#include "basic/files.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "exchange/book_csv.h"
#include "project/load.h"

#include <istream>
#include <iterator>
#include <ostream>

namespace cli {

bool openProject(project::Book& book, StreamDesktop& desktop, const std::string& path) {
    desktop.setAbout(path);
    const bool opened = project::openPath(book, desktop, path);
    desktop.setAbout({});
    return opened;
}

std::string textOf(const std::string& path, std::istream& in) {
    if (path != "-") return basic::readFile(path);
    return basic::toUtf8(std::string(std::istreambuf_iterator<char>(in), {}));
}

bool loadBook(project::Book& book, const std::string& path, std::istream& in, std::ostream& err) {
    if (basic::lower(path).ends_with(".grl")) {
        StreamDesktop desktop(err);
        return openProject(book, desktop, path);
    }
    try {
        exchange::readBook(book.MSFG, textOf(path, in));
        return true;
    } catch (const basic::RuntimeError& error) {
        return fail(err, path, error) == Done;
    }
}

} // namespace cli
