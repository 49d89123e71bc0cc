#pragma once

#include "status.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace files {

enum class OpenFor {
    Reading,
    ReadingNoLink, ///< a link is refused, and a pipe does not wait for its writer
    Writing,       ///< what is there, from its start; it is not cut
    Making,        ///< to read and write; refused when the name is taken
};

/// An open file, closed at the end. What fails raises Error.
class OpenFile {
  public:
    OpenFile() = default;
    /// `rights` are those of a file that is made, less what the process's mask takes away.
    OpenFile(std::string path, OpenFor what, unsigned rights = 0666);
    OpenFile(OpenFile&& other) noexcept;
    OpenFile& operator=(OpenFile&& other) noexcept;
    ~OpenFile();

    /// The same file, open once more; a place in it is shared.
    [[nodiscard]] OpenFile again() const;

    [[nodiscard]] bool isOpen() const { return m_number >= 0; }
    [[nodiscard]] const std::string& path() const { return m_path; } ///< as it was opened
    [[nodiscard]] int number() const { return m_number; }            ///< for this room
    [[nodiscard]] Status status() const;

    /// The next bytes, as many as there are up to the size of `into`; 0 at the end.
    [[nodiscard]] std::size_t read(std::span<std::byte> into) const;
    /// Those from `offset` on, whatever was read before.
    [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const;
    void write(std::string_view bytes) const;
    /// Writes `length` bytes of `source` from `offset` on, within the system where it can.
    void copy(const OpenFile& source, std::uint64_t offset, std::uint64_t length) const;
    void sync() const;
    /// Closes now, so that a late error of writing is seen.
    void close();

  private:
    std::string m_path;
    int m_number = -1;
};

/// All that `path` holds, at most `limit` bytes.
[[nodiscard]] std::string contentOf(const OpenFile& file, std::size_t limit = static_cast<std::size_t>(-1));

} // namespace files
