#pragma once

#include "book.h"

#include "files/lock.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The recovery copy as a file: a text of one line a row, the cells parted by tabs, between a few named lines
// and the line "end", without which the file counts as damaged.

namespace project {

struct BookCopy {
    std::chrono::system_clock::time_point written;
    std::string caption;
    std::string fileName;
    std::string fileMark;
    char side = 'C';
    float height = 0;
    sheet::Heading heading;
    std::vector<std::vector<std::string>> rows;
};

/// Takes a text part by part.
using Sink = std::function<void(std::string_view part)>;

/// The copy, in parts of a few kilobytes: it is also written when memory is what is missing.
void writeCopy(const Book& book, std::chrono::system_clock::time_point written, const Sink& sink);

/// The copy in `content`; nothing when it is damaged or none of ours.
[[nodiscard]] std::optional<BookCopy> parseCopy(std::string_view content);

/// A file that this process holds locked; the lock ends with the object or the process, the file stays.
class LockedFile {
  public:
    LockedFile() = default;

    /// Writes what `content` hands on as `path` whole: the file is locked and on the disk before it gets its
    /// name. Raises the error of opening a file for writing.
    static LockedFile write(const std::string& path, const std::function<void(const Sink& sink)>& content);
    /// Locks an existing file; one that is not held (see below) when it is gone or anyone holds it.
    static LockedFile lock(const std::string& path);

    [[nodiscard]] bool isHeld() const { return m_file.isOpen(); }
    /// All of a file that was locked; raises the error of reading a file.
    [[nodiscard]] std::string read() const;

  private:
    files::OpenFile m_file;
    std::shared_ptr<files::FileLock> m_lock; ///< of one that was written
};

} // namespace project
