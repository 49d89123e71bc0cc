#include "load.h"

#include "basic/files.h"
#include "dao/error_numbers.h"
#include "marks.h"
#include "project_file.h"

#include <array>

namespace project {

namespace {

/// Row 1 of the book before, which holds where the file says nothing: its first record fills only the side
/// that it has, and without a record all stays.
class Leftover {
  public:
    explicit Leftover(sheet::Grid& grid) : m_grid(grid) {
        for (int col = 0; col < sheet::columnCount; ++col) {
            m_texts[static_cast<std::size_t>(col)] = grid.Text(1, col);
            grid.setText(1, col, {});
        }
    }

    /// Puts back what the file left of a first row: all columns, or only those of the offset when it has one.
    /// What that is, in words.
    std::string restore(bool hasRecord) {
        std::string stayed;
        for (int col = 0; col < sheet::columnCount; ++col) {
            std::string& text = m_texts[static_cast<std::size_t>(col)];
            const bool offset = col >= sheet::Left && col <= sheet::Right;
            if (text.empty() || (hasRecord && !offset) || !m_grid.Text(1, col).empty()) continue;
            stayed += (stayed.empty() ? "" : ", ") + m_grid.Text(0, col) + ' ' + text;
            m_grid.setText(1, col, std::move(text));
        }
        return stayed;
    }

    [[nodiscard]] bool rowIsFilled() const {
        for (int col = 0; col < sheet::columnCount; ++col)
            if (!m_grid.Text(1, col).empty()) return true;
        return false;
    }

  private:
    sheet::Grid& m_grid;
    std::array<std::string, sheet::columnCount> m_texts;
};

void tellLeftover(sheet::Notices& notices, const std::string& stayed, const std::string& before) {
    if (!stayed.empty())
        notices.add({1, -1, "keeps " + stayed + " of " + (before.empty() ? "the book before" : before)});
}

} // namespace

bool op(Book& book, desktop::Desktop& desktop, Report& report) {
    const std::string before = book.hasFile() ? basic::baseName(book.projectPath()) : std::string();
    try {
        book.setProjectPath(book.FileName);
        book.MSFG.beginBook();
        book.MSFG.setRows(2);
        book.FileMark.clear();
        book.JobHeading = {};
        std::string mark = fileMark(book.FileName);
        GrlReader reader(book.FileName);
        book.CurrentHI = book.LastReading = 0;
        std::string stayed;
        {
            Leftover leftover(book.MSFG);
            try {
                if (reader.count() > 0) {
                    book.MSFG.setRows(reader.count() + 1);
                    reader.fill(book, desktop, 1);
                }
                if (!book.Guarded) stayed = leftover.restore(reader.count() > 0);
            } catch (const basic::RuntimeError&) {
                (void)leftover.restore(leftover.rowIsFilled());
                throw;
            }
        }
        book.JobHeading = reader.heading();
        book.FileMark = std::move(mark);
        book.SavedMark = bookMark(book);
        report.add(reader.note());
        tellLeftover(book.notices, stayed, before);
        return true;
    } catch (const basic::RuntimeError& error) {
        book.SavedMark = bookMark(book); // a remainder that nobody typed
        showLoadError(desktop, error);
        return false;
    }
}

bool openPath(Book& book, desktop::Desktop& desktop, const std::string& path) {
    book.FileName = path;
    book.CurrentFile = path;
    Report report(desktop);
    return op(book, desktop, report);
}

void showLoadError(desktop::Desktop& desktop, const basic::RuntimeError& error) {
    if (dao::is(error.number(), dao::EngineError::UnknownFormat) ||
        dao::is(error.number(), dao::EngineError::NotAPassword))
        desktop.messageBox(notAProjectFile);
    else if (error.number() != basic::PermissionDenied)
        desktop.messageBox(std::to_string(error.number()) + "  " + error.description());
}

} // namespace project
