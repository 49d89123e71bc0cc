#pragma once

#include "book.h"
#include "desktop/desktop.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

// A copy of an unsaved book in the program folder, for the start after a crash or a power cut. It goes by its
// own mark: the grid differs from what was last made, loaded or saved. It never touches a project file.

namespace project {

/// Copies are files in the program folder whose names begin so.
inline constexpr const char* copyPrefix = "recovery-";

/// True while the grid holds something that no file has.
[[nodiscard]] bool isUnsaved(const Book& book);

/// What the status bar says of a book that was set aside.
inline constexpr const char* setAsideNote =
    "The unsaved book is kept: the next start of the program offers it.";

/// What became of a book that was to be set aside.
struct Aside {
    std::string path;    ///< of the copy; empty when nothing was unsaved, or when it failed
    std::string failure; ///< why there is none, as a sentence

    [[nodiscard]] bool failed() const { return !failure.empty(); }
};

/// Writes a copy that the next start offers like one of a crash, when the book is unsaved; called before its
/// grid is dropped without a question. A grid that stands in such a copy already gets no second one. Raises
/// nothing.
Aside setAside(Book& book, desktop::Desktop& desktop);

/// The same after something failed that nobody expected, and always anew. What is to be said about it; empty
/// when there was nothing unsaved.
[[nodiscard]] std::string rescueBook(const Book& book, desktop::Desktop& desktop);

class LockedFile;

/// The copy of this process. It is locked while the process lives, so that another instance does not offer
/// it.
class Recovery {
  public:
    Recovery(Book& book, desktop::Desktop& desktop);
    Recovery(const Recovery&) = delete;
    Recovery& operator=(const Recovery&) = delete;
    ~Recovery();

    /// Once, after the main window is shown: offers the copies that no running process holds, the newest
    /// first, until one is taken. No moves a copy to the trash, Cancel ends the asking and keeps them all.
    void offer();

    /// Writes the copy anew when the book is unsaved and has changed since; removes it when it is not
    /// unsaved. To be called by the window's timer when keys have rested for a second. Returns how long to
    /// wait at least before the next call: a copy is written every 10 seconds at most.
    std::chrono::milliseconds keep();

    /// A normal end: the copy goes.
    void discard();

  private:
    void write(std::uint64_t mark);
    void restore(const struct BookCopy& copy);

    Book& m_book;
    desktop::Desktop& m_desktop;
    std::string m_path; // of this process's copy; empty while there is none
    std::unique_ptr<LockedFile> m_file;
    std::uint64_t m_mark = 0; // of the grid in the copy
    std::chrono::system_clock::time_point m_written{};
    bool m_failureTold = false;
};

} // namespace project
