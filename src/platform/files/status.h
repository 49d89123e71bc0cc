#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace files {

/// A file of the system whatever its names: device and number.
using FileId = std::pair<std::uint64_t, std::uint64_t>;

struct Status {
    enum class Kind { Plain, Folder, Link, Other };
    Kind kind = Kind::Other;
    FileId id;
    unsigned mode = 0; ///< the rights, with the bits above them (set-user and the like)
    unsigned owner = 0;
    unsigned group = 0;
    std::uint64_t names = 0; ///< hard links
    std::uint64_t size = 0;
    std::int64_t seconds = 0; ///< of the last change of its content
    std::int64_t nanoseconds = 0;
};

/// What stands at `path`, links followed; nothing when there is nothing. Error for what cannot be found out.
[[nodiscard]] std::optional<Status> statusOf(const std::string& path);
/// The same of the name itself, which may be a link.
[[nodiscard]] std::optional<Status> statusOfName(const std::string& path);

/// Error EACCES when its owner made what stands at `path` read-only, else why this process may not write it.
void requireWritable(const std::string& path, const Status& status);

/// The whole path behind all links, also those that lead to nothing yet.
[[nodiscard]] std::string behindLinks(const std::string& path);

/// The folder that `path` stands in: "." without a slash.
[[nodiscard]] std::string folderOf(const std::string& path);

} // namespace files
