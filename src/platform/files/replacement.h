#pragma once

#include "sibling.h"

#include <optional>
#include <string>
#include <string_view>

namespace files {

/// What a replacement takes the place of.
enum class Target {
    File, ///< the file behind the name: links are followed, a read-only one is refused (EACCES), and what is
          ///< no plain file (a pipe, a device) is written directly
    Name, ///< the name itself: whatever stands there is replaced, a link is never followed
};

/// The rights of the file that is written.
enum class Rights {
    Kept,      ///< owner, mode and extended attributes of the file that is replaced; a new one gets the usual
    OwnerOnly, ///< read and written by its owner alone
};

/// The one way to replace a file: the new content is written to a sibling, gets its rights, is synced and
/// renamed over the old file, and the folder is synced. Without `commit` the old file stays as it was.
class Replacement {
  public:
    explicit Replacement(const std::string& path, Target target = Target::File, Rights rights = Rights::Kept);
    /// The name `path` itself becomes a file with the rights of `model`.
    Replacement(const std::string& path, const OpenFile& model);
    Replacement(Replacement&& other) noexcept = default;
    Replacement& operator=(Replacement&&) = delete;
    ~Replacement() = default;

    /// Where the new content stands until it is committed; empty when it is written directly.
    [[nodiscard]] std::string siblingPath() const { return m_sibling ? m_sibling->path() : std::string(); }
    [[nodiscard]] const std::string& target() const { return m_path; } ///< links followed
    [[nodiscard]] const OpenFile& file() const { return m_sibling ? m_sibling->file() : m_direct; }

    void write(std::string_view bytes) { file().write(bytes); }
    void copy(const OpenFile& source, std::uint64_t offset, std::uint64_t length) {
        file().copy(source, offset, length);
    }
    /// All of `source`.
    void copy(const OpenFile& source);

    /// The rights already, for a file that a database will take the place of.
    void takeRightsNow();
    /// Rights and content to the disk; nothing is written after it. `commit` does it where it was not done.
    void finish();
    void commit(Sibling::Onto onto = Sibling::Onto::Anything);

    /// After `commit`: the file, open and locked, for who goes on with it.
    [[nodiscard]] OpenFile takeFile() { return m_sibling->takeFile(); }
    [[nodiscard]] std::shared_ptr<FileLock> takeLock() { return m_sibling->takeLock(); }

  private:
    std::string m_path;
    std::optional<Status> m_model; ///< the owner, group and mode that the new file gets; none: the usual ones
    OpenFile m_source;             ///< whose extended attributes it gets
    bool m_hasRights = false;
    bool m_finished = false;
    std::optional<Sibling> m_sibling;
    OpenFile m_direct; ///< written instead of a sibling
};

} // namespace files
