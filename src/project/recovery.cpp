#include "recovery.h"

#include "basic/files.h"
#include "copy_file.h"
#include "marks.h"
#include "report.h"

#include "files/folder.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <vector>

namespace project {

namespace {

using std::chrono::system_clock;
constexpr std::chrono::seconds leastPause{10};
constexpr std::string_view copyEnding = ".txt";

std::string newCopyPath(desktop::Desktop& desktop) {
    static int count = 0;
    const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(desktop.now().time_since_epoch());
    return desktop.programFolder() + '/' + copyPrefix + std::to_string(now.count()) + '-' +
           files::processId() + '-' + std::to_string(++count) + std::string(copyEnding);
}

std::string clockTime(system_clock::time_point when) {
    const std::time_t seconds = system_clock::to_time_t(when);
    std::tm local{};
    std::array<char, 32> text{};
    localtime_r(&seconds, &local);
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &local)};
}

struct Found {
    std::string path;
    LockedFile file;
    BookCopy copy;
};

/// The whole copies that nobody holds, locked now, the newest first.
std::vector<Found> findCopies(const std::string& folder) {
    std::vector<Found> found;
    std::vector<std::string> names;
    try {
        names = files::namesIn(folder);
    } catch (const files::Error&) {
        return found;
    }
    for (const std::string& name : names) {
        if (!name.starts_with(copyPrefix)) continue;
        const std::string path = folder + '/' + name;
        try {
            LockedFile file = LockedFile::lock(path);
            if (!file.isHeld()) continue;
            if (std::optional<BookCopy> copy = parseCopy(file.read()))
                found.push_back({path, std::move(file), std::move(*copy)});
        } catch (const basic::RuntimeError&) {
            continue; // it cannot be read now; a later start may
        }
    }
    std::sort(found.begin(), found.end(),
              [](const Found& a, const Found& b) { return a.copy.written > b.copy.written; });
    return found;
}

LockedFile writeLocked(const std::string& path, const Book& book, system_clock::time_point when) {
    return LockedFile::write(path, [&](const Sink& sink) { writeCopy(book, when, sink); });
}

std::string noCopy(std::string_view why) {
    return asSentence("No copy of the unsaved book could be kept: " + std::string(why));
}

/// "An unsaved book "road.grl" of 2026-11-23 09:36 with 57 rows was found. Open it?"
std::string question(const BookCopy& copy) {
    Book book;
    book.Caption = copy.caption;
    const std::string name =
        book.hasFile() ? '"' + basic::baseName(book.projectPath()) + '"' : "without a name";
    const std::size_t rows = copy.rows.size();
    return "An unsaved book " + name + " from " + clockTime(copy.written) + " with " + std::to_string(rows) +
           (rows == 1 ? " row" : " rows") + " was found. Open it?";
}

} // namespace

bool isUnsaved(const Book& book) {
    return bookMark(book) != book.SavedMark;
}

Aside setAside(Book& book, desktop::Desktop& desktop) {
    if (!isUnsaved(book)) return {};
    const std::uint64_t mark = bookMark(book);
    if (mark == book.AsideMark && basic::fileExists(book.AsideCopy)) return {book.AsideCopy, {}};
    std::string path = newCopyPath(desktop);
    try {
        writeLocked(path, book, desktop.now());
    } catch (const basic::RuntimeError& error) {
        return {{}, noCopy(error.told())};
    }
    book.AsideMark = mark;
    book.AsideCopy = path;
    return {std::move(path), {}};
}

std::string rescueBook(const Book& book, desktop::Desktop& desktop) {
    if (!isUnsaved(book)) return {};
    try {
        writeLocked(newCopyPath(desktop), book, desktop.now());
        return setAsideNote;
    } catch (const basic::RuntimeError& error) {
        return noCopy(error.told());
    } catch (const std::exception& error) {
        return noCopy(error.what());
    }
}

Recovery::Recovery(Book& book, desktop::Desktop& desktop) : m_book(book), m_desktop(desktop) {}

Recovery::~Recovery() = default;

void Recovery::offer() {
    for (Found& found : findCopies(m_desktop.programFolder())) {
        const desktop::Answer answer =
            m_desktop.messageBox(question(found.copy), desktop::Buttons::YesNoCancel);
        if (answer == desktop::Answer::Cancel) return;
        if (answer == desktop::Answer::Yes) {
            restore(found.copy);
            write(bookMark(m_book));
            if (!m_path.empty()) files::removeQuietly(found.path); // else the old copy stays the only one
            return;
        }
        if (!m_desktop.moveToTrash(found.path)) files::removeQuietly(found.path);
    }
}

std::chrono::milliseconds Recovery::keep() {
    const std::uint64_t mark = bookMark(m_book);
    if (mark == m_book.SavedMark) {
        discard();
        return std::chrono::milliseconds{0};
    }
    if (!m_path.empty() && mark == m_mark) return std::chrono::milliseconds{0};
    const system_clock::duration since = m_desktop.now() - m_written;
    if (since >= system_clock::duration::zero() && since < leastPause)
        return std::chrono::duration_cast<std::chrono::milliseconds>(leastPause - since);
    write(mark);
    return std::chrono::milliseconds{0};
}

void Recovery::discard() {
    if (!m_path.empty()) files::removeQuietly(m_path);
    m_path.clear();
    m_file.reset();
}

void Recovery::write(std::uint64_t mark) {
    const std::string path = m_path.empty() ? newCopyPath(m_desktop) : m_path;
    m_written = m_desktop.now();
    try {
        m_file = std::make_unique<LockedFile>(writeLocked(path, m_book, m_written));
        m_path = path;
        m_mark = mark;
        m_failureTold = false;
    } catch (const basic::RuntimeError& error) {
        if (!m_failureTold) m_desktop.status(noCopy(error.told()));
        m_failureTold = true;
    }
}

void Recovery::restore(const BookCopy& copy) {
    sheet::Grid& grid = m_book.MSFG;
    grid.setVisible(false);
    grid.beginBook();
    grid.setRows(static_cast<int>(copy.rows.size()) + 1);
    int row = 0;
    for (const std::vector<std::string>& cells : copy.rows) {
        ++row;
        for (int col = 0; col < sheet::columnCount; ++col)
            grid.setText(row, col, cells[static_cast<std::size_t>(col)]);
    }
    grid.moveTo(row, sheet::Chainage);
    grid.setVisible(true);
    m_book.Caption = copy.caption;
    m_book.FileName = copy.fileName;
    m_book.FileMark = copy.fileMark;
    m_book.JobHeading = copy.heading;
    m_book.CurrentSide = copy.side;
    m_book.CurrentHI = copy.height;
    m_book.BookChanged = true;
    m_book.SavedMark = 0;
    m_desktop.focusGrid();
}

} // namespace project
