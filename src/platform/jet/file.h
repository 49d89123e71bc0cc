#pragma once

#include "value.h"

#include <memory>
#include <span>
#include <string>

namespace jet {

enum class OpenMode { ReadOnly, ReadWrite };

/// Where a database lives: content that is read at random and replaced as a whole. Every call may throw
/// jet::Error; until finishReplace() returns, the content is the old one.
class File {
  public:
    virtual ~File() = default;

    [[nodiscard]] virtual std::uint64_t size() = 0;
    /// Fills all of `into`; the range must lie inside the file.
    virtual void read(std::uint64_t offset, std::span<std::uint8_t> into) = 0;

    /// Starts a replacement, empty at first. Refused when the content changed since it was opened.
    virtual void beginReplace() = 0;
    /// The next `length` bytes of the replacement are those of the old content from `offset` on.
    virtual void keep(std::uint64_t offset, std::uint64_t length) = 0;
    /// The next bytes of the replacement.
    virtual void append(std::span<const std::uint8_t> bytes) = 0;
    /// Puts the replacement in the place of the content, at once and durably.
    virtual void finishReplace() = 0;
    /// Drops a replacement that was begun, if any.
    virtual void abandonReplace() noexcept = 0;
};

/// A file of the system. A symbolic link is followed. ReadOnly takes a shared, ReadWrite an exclusive lock
/// against other processes. Nothing is ever written to the file itself: a replacement is a sibling that is
/// synced, gets the mode and owner of the old file and is renamed over it.
[[nodiscard]] std::unique_ptr<File> openFile(const std::string& path, OpenMode mode);
/// A file that does not exist yet; it comes into being with the first replacement. AlreadyExists if it does.
[[nodiscard]] std::unique_ptr<File> newFile(const std::string& path);

/// A file in memory.
class MemoryFile : public File {
  public:
    explicit MemoryFile(Bytes content = {}) : m_content(std::move(content)) {}
    [[nodiscard]] const Bytes& content() const { return m_content; }

    std::uint64_t size() override { return m_content.size(); }
    void read(std::uint64_t offset, std::span<std::uint8_t> into) override;
    void beginReplace() override { m_next.clear(); }
    void keep(std::uint64_t offset, std::uint64_t length) override;
    void append(std::span<const std::uint8_t> bytes) override;
    void finishReplace() override { m_content.swap(m_next); }
    void abandonReplace() noexcept override { m_next.clear(); }

  private:
    Bytes m_content;
    Bytes m_next;
};

} // namespace jet
