#include "project_commands.h"

#include "basic/files.h"
#include "marks.h"
#include "new_file.h"
#include "project_file.h"
#include "recent_files.h"
#include "recovery.h"

#include <optional>

namespace project {

namespace {

using desktop::Answer;
using desktop::Buttons;

constexpr const char* noFile = "*.grl";
constexpr const char* saveChanges = "Do you want to Save the changes you made to this file";
constexpr sheet::Colour failedSave = sheet::rgb(240, 210, 220);

/// What a command has to say besides its messages; the status bar gets it all at once.
class Report {
  public:
    explicit Report(desktop::Desktop& desktop) : m_desktop(desktop) {}
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;
    ~Report() {
        if (!m_text.empty()) m_desktop.status(m_text);
    }
    void add(std::string_view sentence) {
        if (!m_text.empty()) m_text += ' ';
        m_text += sentence;
    }
    /// Runs a step that the command goes on without; true when it went well.
    template <typename Step>
    bool attempt(std::string_view failure, Step&& step) {
        try {
            step();
            return true;
        } catch (const basic::RuntimeError& error) {
            add(std::string(failure) + ": " + error.description() + '.');
            return false;
        }
    }

  private:
    desktop::Desktop& m_desktop;
    std::string m_text;
};

/// Asks for a name into cdl1.FileName, which stays as `before` when there is none.
bool chooseFile(sheet::Book& book, desktop::Desktop& desktop, desktop::FileDialog kind,
                const std::string& before) {
    std::optional<std::string> chosen = desktop.fileDialog(kind, book.FileName);
    const bool named = chosen && !chosen->empty() && (*chosen != noFile);
    if (named)
        book.FileName = std::move(*chosen);
    else
        book.FileName = before;
    return named;
}

/// Makes the project file for `path` with `make`; when that cannot be, makes an empty one under the name with
/// "aa" behind it, and the command goes on with `path` all the same. Raises the second error.
template <typename Make>
void makeProjectFile(desktop::Desktop& desktop, Report& report, const std::string& path, Make&& make) {
    try {
        make();
    } catch (const basic::RuntimeError& error) {
        NewFile(desktop, path + "aa").commit(desktop);
        report.add(path + " could not be made (" + error.description() + "); an empty project was made as " +
                   path + "aa.");
    }
}

/// Writes the grid into `file`, or without one into the project that the caption names. What cannot be
/// written is said.
void writeBook(sheet::Book& book, desktop::Desktop& desktop, Report& report, std::optional<NewFile> file) {
    const std::string path = book.projectPath();
    Refused refused;
    const bool written = report.attempt("The book was not saved", [&] {
        refused = writeRows(book, desktop, file ? file->path() : path);
        if (file) file->commit(desktop);
    });
    if (!written) {
        if (basic::fileExists(path)) report.add(path + " is as it was.");
        return;
    }
    book.FileMark = fileMark(path);
    if (refused.count == 0) {
        book.SavedMark = gridMark(book.MSFG);
        report.add("Saved " + path + '.');
        return;
    }
    report.add("Saved " + path + ", but " + std::to_string(refused.count) +
               (refused.count == 1 ? " text does" : " texts do") + " not fit the file and " +
               (refused.count == 1 ? "was" : "were") + " left out: " + book.MSFG.Text(0, refused.col) +
               " in row " + std::to_string(refused.row) + (refused.count == 1 ? "." : " is the first."));
}

/// Keeps the version on disk as ".bak". False when that version is another program's and could not be kept:
/// then it must not be overwritten.
bool backUp(const sheet::Book& book, Report& report) {
    const std::string path = book.projectPath();
    const bool foreign = !book.FileMark.empty() && basic::fileExists(path) && fileMark(path) != book.FileMark;
    const bool kept = report.attempt("No backup was made", [&] { basic::fileCopy(path, path + ".bak"); });
    if (foreign && kept)
        report.add("Another program changed the file; its version is kept as " + path + ".bak.");
    if (foreign && !kept) report.add("Another program changed the file, so the book was not saved over it.");
    return kept || !foreign;
}

/// The name for the first Save of a book, in cdl1.FileName.
bool chooseFirstName(sheet::Book& book, desktop::Desktop& desktop) {
    const std::string before = book.FileName;
    do {
        if (!chooseFile(book, desktop, desktop::FileDialog::Save, before)) {
            desktop.messageBox("1st Give new name");
            return false;
        }
    } while (basic::fileExists(book.FileName) &&
             desktop.messageBox("This File is allready exists please give another Name",
                                Buttons::YesNoCancel) == Answer::Yes);
    book.FileName = fixExtension(std::move(book.FileName));
    return true;
}

void emptyBook(sheet::Book& book, desktop::Desktop& desktop) {
    sheet::Grid& grid = book.MSFG;
    grid.setVisible(true);
    grid.setRows(2);
    for (int col = 0; col < grid.Cols(); ++col)
        grid.setText(1, col, {});
    grid.moveTo(1, sheet::RLevel);
    desktop.focusGrid();
    book.BookChanged = false;
    book.SavedMark = gridMark(grid);
}

} // namespace

void newProject(sheet::Book& book, desktop::Desktop& desktop) {
    if (book.MSFG.Visible() && book.BookChanged &&
        desktop.messageBox("Check current file is saved or not..To Create another Press Yes",
                           Buttons::YesNo) != Answer::Yes)
        return;
    const std::string before = book.FileName;
    Answer answer = Answer::Yes;
    do {
        book.FileName.clear();
        if (!chooseFile(book, desktop, desktop::FileDialog::Save, before)) return;
        book.FileName = fixExtension(std::move(book.FileName));
        if (basic::fileExists(book.FileName))
            answer =
                desktop.messageBox("Given Filename is allready exists Do you want to EMPTY the given file...",
                                   Buttons::YesNoCancel, "Check it");
        else
            answer = Answer::Yes;
        if (answer == Answer::Cancel) return;
    } while (answer == Answer::No);

    const std::string path = book.FileName;
    Report report(desktop);
    try {
        makeProjectFile(desktop, report, path, [&] { NewFile(desktop, path).commit(desktop); });
    } catch (const basic::RuntimeError& error) {
        desktop.messageBox(error.description());
        return;
    }
    book.CurrentFile = path;
    book.setProjectPath(path);
    book.FileMark = fileMark(path);
    emptyBook(book, desktop);
}

void openProject(sheet::Book& book, desktop::Desktop& desktop) {
    const std::string before = book.FileName;
    book.FileName = noFile;
    bool givenUp =
        !book.BookChanged; // the grid may go; not so what a save failed to write or nobody was asked about
    if (!book.MSFG.Visible()) {
        book.MSFG.setVisible(true);
    } else if (book.BookChanged) {
        const Answer answer = desktop.messageBox(saveChanges, Buttons::YesNoCancel);
        if (answer == Answer::Cancel) {
            book.FileName = before;
            return;
        }
        givenUp = answer == Answer::No;
        if (!givenUp) saveProject(book, desktop);
        book.BookChanged = false;
    }
    if (!chooseFile(book, desktop, desktop::FileDialog::Open, before)) return;
    book.CurrentFile = book.FileName;
    const std::string copy = setAside(book, desktop);
    const bool loaded = op(book, desktop);
    if (!copy.empty() && loaded && givenUp)
        basic::kill(copy);
    else if (!copy.empty())
        desktop.status(setAsideNote);
    desktop.focusGrid();
}

void openRecent(sheet::Book& book, desktop::Desktop& desktop, int entry) {
    const std::string& path = book.mnuX.at(static_cast<std::size_t>(entry) - 1);
    if (path.empty()) return;
    book.FileName = path;
    const std::string copy = setAside(book, desktop);
    op(book, desktop);
    if (!copy.empty()) desktop.status(setAsideNote);
}

void saveProject(sheet::Book& book, desktop::Desktop& desktop) {
    Report report(desktop);
    std::optional<NewFile> file;
    bool mayWrite = true;
    if (book.hasFile()) {
        mayWrite = backUp(book, report);
    } else {
        if (!chooseFirstName(book, desktop)) return;
        const std::string path = book.FileName;
        try {
            makeProjectFile(desktop, report, path, [&] { file.emplace(desktop, path); });
            book.CurrentFile = path;
            book.setProjectPath(path);
            book.FileMark.clear();
        } catch (const basic::RuntimeError& error) {
            desktop.messageBox(error.description());
            if (error.number() != basic::PermissionDenied) {
                book.MSFG.setCellBackColor(failedSave);
                desktop.hideProgress();
                if (book.MSFG.Visible()) desktop.focusGrid();
                return;
            }
            mayWrite = backUp(book, report);
        }
    }
    if (mayWrite) writeBook(book, desktop, report, std::move(file));
    report.attempt("The list of recent projects was not written", [&] { Sv(book, desktop); });
    mNu(book, desktop);
}

void saveProjectAs(sheet::Book& book, desktop::Desktop& desktop) {
    const std::optional<std::string> chosen = desktop.fileDialog(desktop::FileDialog::Save, book.FileName);
    if (!chosen || chosen->empty()) return;
    const std::string path = book.FileName = fixExtension(*chosen);
    Report report(desktop);
    std::optional<NewFile> file;
    try {
        makeProjectFile(desktop, report, path, [&] { file.emplace(desktop, path); });
    } catch (const basic::RuntimeError& error) {
        desktop.messageBox(error.description());
        return;
    }
    book.setProjectPath(path);
    book.FileMark.clear();
    writeBook(book, desktop, report, std::move(file));
}

bool rewriteProject(sheet::Book& book, desktop::Desktop& desktop) {
    Report report(desktop);
    if (backUp(book, report)) writeBook(book, desktop, report, std::nullopt);
    return !isUnsaved(book);
}

bool makeProject(sheet::Book& book, desktop::Desktop& desktop, const std::string& path) {
    Report report(desktop);
    std::optional<NewFile> file;
    if (!report.attempt(path + " was not made", [&] { file.emplace(desktop, path); })) return false;
    book.setProjectPath(path);
    book.FileMark.clear();
    writeBook(book, desktop, report, std::move(file));
    return !isUnsaved(book);
}

bool exitProgram(sheet::Book& book, desktop::Desktop& desktop) {
    if (!book.BookChanged) return true;
    switch (desktop.messageBox(saveChanges, Buttons::YesNoCancel)) {
    case Answer::Yes:
        saveProject(book, desktop);
        setAside(book, desktop); // nothing after a save that went well
        return true;
    case Answer::No:
        return true;
    case Answer::Cancel:
    case Answer::Ok:
        break;
    }
    return false;
}

} // namespace project
