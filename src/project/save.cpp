#include "save.h"

#include "backup.h"
#include "basic/files.h"
#include "choose_file.h"
#include "marks.h"
#include "project_file.h"
#include "recent_files.h"

#include <optional>

namespace project {

namespace {

using desktop::Answer;
using desktop::Buttons;

constexpr sheet::Colour failedSave = sheet::rgb(240, 210, 220);
constexpr const char* notSaved = "The book was not saved";

Saved notWritten(std::string reason) {
    return {.end = Saved::Not, .reason = std::move(reason)};
}

std::string leftOutText(const sheet::Grid& grid, const Refused& refused) {
    const bool one = refused.count == 1;
    return std::to_string(refused.count) + (one ? " text does" : " texts do") + " not fit the file and " +
           (one ? "was" : "were") + " left out: " + grid.Text(0, refused.col) + " in row " +
           std::to_string(refused.row) + (one ? "." : " is the first.");
}

/// Writes the grid into `file`, or without one into the project that the caption names.
Saved writeBook(Book& book, desktop::Desktop& desktop, Report& report, std::optional<NewFile> file) {
    const std::string path = book.projectPath();
    Refused refused;
    try {
        refused = writeRows(book, desktop, file ? std::string(file->path()) : path);
        if (file && file->commit(desktop)) report.add(trashedNote);
    } catch (const basic::RuntimeError& error) {
        if (basic::fileExists(path)) report.addFirst(path + " is as it was.");
        report.addFirst(asSentence(std::string(notSaved) + ": " + error.told()));
        return notWritten(error.told());
    }
    book.FileMark = fileMark(path);
    if (refused.heading) {
        report.addFirst("Saved " + path +
                        ", but not the heading: the file's table Job is not one of this program.");
        return {.end = Saved::Partly, .leftOut = refused.count};
    }
    if (refused.count == 0) {
        book.SavedMark = bookMark(book);
        report.addFirst("Saved " + path + '.');
        return {.end = Saved::Whole};
    }
    report.addFirst("Saved " + path + ", but " + leftOutText(book.MSFG, refused));
    return {.end = Saved::Partly, .leftOut = refused.count};
}

Saved writeOver(Book& book, desktop::Desktop& desktop, Report& report) {
    if (backUp(book, report)) return writeBook(book, desktop, report, std::nullopt);
    return notWritten("Another program changed the file");
}

/// The name for the first Save of a book, in cdl1.FileName. A name that is there already is asked about as it
/// was given, and once more when the fixed ending makes it another.
bool chooseFirstName(Book& book, desktop::Desktop& desktop) {
    const std::string before = book.FileName;
    const auto otherWanted = [&](const std::string& path) {
        return basic::fileExists(path) &&
               desktop.messageBox("This File is allready exists please give another Name",
                                  Buttons::YesNoCancel) == Answer::Yes;
    };
    while (true) {
        if (!chooseFile(book, desktop, desktop::FileDialog::Save, before)) {
            desktop.messageBox("1st Give new name");
            return false;
        }
        if (otherWanted(book.FileName)) continue;
        std::string fixed = fixExtension(book.FileName);
        if (fixed != book.FileName && otherWanted(fixed)) continue;
        book.FileName = std::move(fixed);
        return true;
    }
}

/// Makes the file of a book's first Save and writes it.
Saved saveFirst(Book& book, desktop::Desktop& desktop, Report& report, bool& listed) {
    if (!chooseFirstName(book, desktop)) return {};
    const std::string path = book.FileName;
    std::optional<NewFile> file;
    try {
        makeProjectFile(desktop, report, path, [&] { file.emplace(desktop, path); });
    } catch (const basic::RuntimeError& error) {
        desktop.messageBox(error.shown());
        listed = error.number() == basic::PermissionDenied;
        if (listed) { // on with the steps of a book that has a name
            const Saved saved = writeOver(book, desktop, report);
            if (saved.written()) return saved;
        }
        report.clear();
        report.add(asSentence(std::string(notSaved) + ": " + path + ": " + error.told(path)));
        if (listed) return notWritten(error.told());
        book.MSFG.setCellBackColor(failedSave);
        desktop.hideProgress();
        if (book.MSFG.Visible()) desktop.focusGrid();
        return notWritten(error.told());
    }
    listed = true;
    book.CurrentFile = path;
    book.setProjectPath(path);
    book.FileMark.clear();
    return writeBook(book, desktop, report, std::move(file));
}

Saved told(Saved saved, const Report& report) {
    saved.told = report.text();
    return saved;
}

} // namespace

Saved saveProject(Book& book, desktop::Desktop& desktop) {
    Report report(desktop);
    bool listed = true;
    Saved saved =
        book.hasFile() ? writeOver(book, desktop, report) : saveFirst(book, desktop, report, listed);
    if (saved.end == Saved::Cancelled || !listed) return told(std::move(saved), report);
    (void)report.attempt("The list of recent projects was not written", [&] { Sv(book, desktop); });
    mNu(book, desktop);
    return told(std::move(saved), report);
}

Saved saveProjectAs(Book& book, desktop::Desktop& desktop) {
    const std::optional<std::string> chosen = desktop.fileDialog(desktop::FileDialog::Save, book.FileName);
    if (!chosen || chosen->empty()) return {};
    const std::string path = book.FileName = fixExtension(*chosen);
    Report report(desktop);
    std::optional<NewFile> file;
    try {
        makeProjectFile(desktop, report, path, [&] { file.emplace(desktop, path); });
    } catch (const basic::RuntimeError& error) {
        desktop.messageBox(error.shown());
        report.addFirst(asSentence(std::string(notSaved) + ": " + path + ": " + error.told(path)));
        return told(notWritten(error.told()), report);
    }
    book.setProjectPath(path);
    book.FileMark.clear();
    return told(writeBook(book, desktop, report, std::move(file)), report);
}

Saved rewriteProject(Book& book, desktop::Desktop& desktop) {
    Report report(desktop);
    return told(writeOver(book, desktop, report), report);
}

Saved makeProject(Book& book, desktop::Desktop& desktop, const std::string& path) {
    Report report(desktop);
    std::optional<NewFile> file;
    const std::string failure = report.attempt(path + " was not made", [&] { file.emplace(desktop, path); });
    if (!failure.empty()) return told(notWritten(failure), report);
    book.setProjectPath(path);
    book.FileMark.clear();
    return told(writeBook(book, desktop, report, std::move(file)), report);
}

} // namespace project
