#include "append.h"

#include "choose_file.h"
#include "project_file.h"
#include "report.h"

#include <optional>

namespace project {

Outcome appendProject(Book& book, desktop::Desktop& desktop) {
    std::optional<std::string> chosen = desktop.fileDialog(desktop::FileDialog::Open, book.FileName);
    if (!chosen || chosen->empty() || *chosen == noFile) return Outcome::Cancelled;
    book.FileName = std::move(*chosen);
    try {
        GrlReader reader(book.FileName);
        if (reader.count() == 0) return Outcome::Done;
        const int rows = book.MSFG.Rows();
        if (reader.count() > mostRows - rows)
            throw basic::RuntimeError(basic::OutOfMemory, "The two books together have too many rows");
        book.MSFG.setRows(rows + reader.count());
        reader.fill(book, desktop, rows);
        Report report(desktop);
        report.add(std::to_string(reader.count()) + " rows were added below row " + std::to_string(rows - 1) +
                   ".");
        report.add(reader.note());
        return Outcome::Done;
    } catch (const basic::RuntimeError& error) {
        desktop.messageBox(error.shown());
        return Outcome::Failed;
    }
}

} // namespace project
