#include "book_file.h"

#include "book_csv.h"
#include "stream_desktop.h"

#include "basic/files.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "project/load.h"

#include <istream>
#include <iterator>
#include <ostream>

namespace cli {

bool loadBook(sheet::Book& book, const std::string& path, std::istream& in, std::ostream& err) {
    if (basic::lower(path).ends_with(".grl")) {
        StreamDesktop desktop(err);
        return project::openPath(book, desktop, path);
    }
    try {
        readBook(book.MSFG, path == "-" ? basic::toUtf8(std::string(std::istreambuf_iterator<char>(in), {}))
                                        : basic::readFile(path));
        return true;
    } catch (const basic::RuntimeError& error) {
        err << "zavrogrl-cli: " << path << ": " << error.description() << '\n';
        return false;
    }
}

} // namespace cli
