#pragma once

#include "lock.h"

#include <memory>
#include <string>

namespace files {

/// A new file beside another, so that one rename brings it there. Its name is short and its own, so that a
/// long name leaves room for it. It is locked while it lives and removed at the end, unless it was moved.
/// Making one removes the siblings in that folder whose processes have died.
class Sibling {
  public:
    Sibling(const std::string& beside, unsigned rights);
    Sibling(Sibling&& other) noexcept;
    Sibling& operator=(Sibling&&) = delete;
    ~Sibling();

    [[nodiscard]] const std::string& path() const { return m_path; } ///< empty once it was moved
    /// The file as it was made. A database that was opened at `path` may have replaced it there.
    [[nodiscard]] const OpenFile& file() const { return m_file; }
    /// True when such a database stands there, which is on the disk as its commit left it.
    [[nodiscard]] bool isReplaced() const;

    enum class Onto {
        Anything, ///< what stands there goes
        Nothing,  ///< EEXIST when something stands there
    };
    /// Gives it the name `target` and brings that to the disk, unless that is a sibling's name too. A lock
    /// that this process has on a file that loses its name goes over to it.
    void moveTo(const std::string& target, Onto onto);

    /// The file and its lock, for who goes on with them after the move.
    [[nodiscard]] OpenFile takeFile() { return std::move(m_file); }
    [[nodiscard]] std::shared_ptr<FileLock> takeLock() { return std::move(m_lock); }

  private:
    std::string m_path;
    OpenFile m_file;
    std::shared_ptr<FileLock> m_lock;
};

} // namespace files
