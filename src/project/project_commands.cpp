#include "project_commands.h"

#include "basic/files.h"
#include "choose_file.h"
#include "load.h"
#include "marks.h"
#include "recovery.h"
#include "save.h"

namespace project {

namespace {

using desktop::Answer;
using desktop::Buttons;

constexpr const char* saveChanges = "Do you want to Save the changes you made to this file";

/// The name and the leave to empty a file that is there.
bool chooseNewName(Book& book, desktop::Desktop& desktop) {
    const std::string before = book.FileName;
    while (true) {
        book.FileName.clear();
        if (!chooseFile(book, desktop, desktop::FileDialog::Save, before)) return false;
        book.FileName = fixExtension(std::move(book.FileName));
        if (!basic::fileExists(book.FileName)) return true;
        const Answer answer =
            desktop.messageBox("Given Filename is allready exists Do you want to EMPTY the given file...",
                               Buttons::YesNoCancel, "Check it");
        if (answer == Answer::Yes) return true;
        if (answer == Answer::Cancel) return false;
    }
}

void emptyBook(Book& book, desktop::Desktop& desktop) {
    sheet::Grid& grid = book.MSFG;
    grid.setVisible(true);
    grid.beginBook();
    grid.setRows(2);
    for (int col = 0; col < grid.Cols(); ++col)
        grid.setText(1, col, {});
    grid.moveTo(1, sheet::RLevel);
    desktop.focusGrid();
    book.CurrentHI = book.LastReading = 0;
    book.BookChanged = false;
    book.JobHeading = {};
    book.SavedMark = bookMark(book);
}

void refuse(Book& book, desktop::Desktop& desktop, const Aside& aside) {
    desktop.status("The book stays open, it is in no file. " + aside.failure);
    book.BookChanged = true;
}

} // namespace

bool mayDrop(Book& book, desktop::Desktop& desktop) {
    const Aside aside = setAside(book, desktop);
    if (aside.failed()) refuse(book, desktop, aside);
    return !aside.failed();
}

Outcome newProject(Book& book, desktop::Desktop& desktop) {
    const bool asks = book.MSFG.Visible() && book.BookChanged;
    if (asks && desktop.messageBox("Check current file is saved or not..To Create another Press Yes",
                                   Buttons::YesNo) != Answer::Yes)
        return Outcome::Cancelled;
    if (!chooseNewName(book, desktop)) return Outcome::Cancelled;
    const bool dropsUnsaved = !asks && isUnsaved(book);
    if (dropsUnsaved && !mayDrop(book, desktop)) {
        book.MSFG.setVisible(true); // so that the next New asks
        return Outcome::Refused;
    }
    const std::string path = book.FileName;
    Report report(desktop);
    try {
        makeProjectFile(desktop, report, path, [&] {
            if (NewFile(desktop, path).commit(desktop)) report.add(trashedNote);
        });
    } catch (const basic::RuntimeError& error) {
        desktop.messageBox(error.shown());
        report.add(asSentence(path + " was not made: " + error.told(path)));
        return Outcome::Failed;
    }
    if (dropsUnsaved) report.add(setAsideNote);
    book.CurrentFile = path;
    book.setProjectPath(path);
    book.FileMark = fileMark(path);
    emptyBook(book, desktop);
    return Outcome::Done;
}

Outcome openProject(Book& book, desktop::Desktop& desktop) {
    std::string before = book.FileName;
    bool givenUp = false;
    if (!book.MSFG.Visible()) {
        book.MSFG.setVisible(true);
    } else if (book.BookChanged) {
        const Answer answer = desktop.messageBox(saveChanges, Buttons::YesNoCancel);
        if (answer == Answer::Cancel) return Outcome::Cancelled;
        givenUp = answer == Answer::No;
        if (!givenUp) {
            book.FileName = noFile;
            const Saved saved = saveProject(book, desktop);
            if (saved.end != Saved::Cancelled && book.FileName != noFile) before = book.FileName;
        }
        book.BookChanged = false;
    }
    book.FileName = noFile;
    if (!chooseFile(book, desktop, desktop::FileDialog::Open, before)) return Outcome::Cancelled;
    const bool unsaved = isUnsaved(book);
    const Aside aside = setAside(book, desktop);
    if (aside.failed() && !givenUp) {
        book.FileName = before;
        refuse(book, desktop, aside);
        return Outcome::Refused;
    }
    book.CurrentFile = book.FileName;
    Report report(desktop);
    const bool loaded = op(book, desktop, report);
    if (loaded && givenUp && !aside.path.empty())
        basic::kill(aside.path);
    else if (unsaved)
        report.add(aside.failed() ? aside.failure : setAsideNote);
    desktop.focusGrid();
    return loaded ? Outcome::Done : Outcome::Failed;
}

Outcome openRecent(Book& book, desktop::Desktop& desktop, int entry) {
    const std::string& path = book.mnuX.at(static_cast<std::size_t>(entry) - 1);
    if (path.empty()) return Outcome::Cancelled;
    const bool unsaved = isUnsaved(book);
    if (!mayDrop(book, desktop)) return Outcome::Refused;
    book.FileName = path;
    Report report(desktop);
    const bool loaded = op(book, desktop, report);
    if (unsaved) report.add(setAsideNote);
    return loaded ? Outcome::Done : Outcome::Failed;
}

bool exitProgram(Book& book, desktop::Desktop& desktop) {
    if (!book.BookChanged) return mayDrop(book, desktop);
    switch (desktop.messageBox(saveChanges, Buttons::YesNoCancel)) {
    case Answer::Yes:
        break;
    case Answer::No:
        return true;
    default:
        return false;
    }
    const Saved saved = saveProject(book, desktop);
    if (saved.whole()) return true;
    const Aside aside = setAside(book, desktop);
    const std::string why = saved.told.empty() ? std::string("The book was not saved.") : saved.told;
    desktop.status(why + ' ' + (aside.failed() ? aside.failure : std::string(setAsideNote)));
    return false;
}

} // namespace project
