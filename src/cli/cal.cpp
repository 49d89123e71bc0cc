#include "cal.h"

#include "book_csv.h"
#include "stream_desktop.h"

#include "sheet/arithmetic_check.h"
#include "sheet/book.h"
#include "sheet/reduction.h"

#include "basic/files.h"
#include "basic/runtime_error.h"

#include <istream>
#include <iterator>
#include <ostream>

namespace cli {
namespace {

std::string contentOf(const std::string& path, std::istream& in) {
    if (path != "-") return basic::readFile(path);
    return basic::toUtf8(std::string(std::istreambuf_iterator<char>(in), {}));
}

} // namespace

ExitStatus cal(const CalOptions& options, std::istream& in, std::ostream& out, std::ostream& err) {
    try {
        sheet::Book book;
        readBook(book.MSFG, contentOf(options.in, in));
        StreamDesktop desktop(err);
        if (sheet::reduceLevels(book, desktop).stopped()) return Failed;
        const std::string csv = writeBook(book.MSFG);
        if (!options.out.empty() && options.out != "-")
            basic::writeFile(options.out, csv);
        else if (!(out << csv).flush())
            throw basic::RuntimeError(basic::DeviceIoError);
        desktop.status(sheet::describe(sheet::checkArithmetic(book.MSFG)));
        desktop.status(book.notices.takeLine().text);
        return Done;
    } catch (const basic::RuntimeError& error) {
        err << "zavrogrl-cli: " << options.in << ": " << error.description() << '\n';
        return Failed;
    }
}

} // namespace cli
