#include "cal.h"

#include "book_file.h"
#include "stream_desktop.h"

#include "exchange/book_csv.h"
#include "project/book.h"
#include "sheet/arithmetic_check.h"
#include "sheet/reduction.h"

#include "basic/files.h"
#include "basic/runtime_error.h"

#include <ostream>

namespace cli {
ExitStatus cal(const CalOptions& options, std::istream& in, std::ostream& out, std::ostream& err) {
    try {
        project::Book book;
        exchange::readBook(book.MSFG, textOf(options.in, in));
        StreamDesktop desktop(err);
        if (sheet::reduceLevels(book, desktop).stopped()) return Failed;
        const std::string csv = exchange::writeBook(book.MSFG);
        if (!options.out.empty() && options.out != "-")
            basic::writeFile(options.out, csv);
        else if (flushed(out << csv, err) != Done)
            return Failed;
        desktop.status(sheet::describe(sheet::checkArithmetic(book.MSFG)));
        desktop.status(book.notices.takeLine().text);
        return Done;
    } catch (const basic::RuntimeError& error) {
        return fail(err, options.in, error);
    }
}

} // namespace cli
