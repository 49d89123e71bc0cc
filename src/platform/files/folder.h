#pragma once

#include <string>
#include <vector>

namespace files {

/// The names in a folder, in no order, without "." and "..".
[[nodiscard]] std::vector<std::string> namesIn(const std::string& folder);

/// One level.
void makeFolder(const std::string& path, unsigned rights = 0777);
void remove(const std::string& path);
/// The same where nothing can be done about a failure.
void removeQuietly(const std::string& path) noexcept;
/// Replaces what stands at `to`.
void rename(const std::string& from, const std::string& to);
/// The same, but EEXIST when something stands there.
void renameToFree(const std::string& from, const std::string& to);
/// Readable and writable by its owner alone.
void makePrivate(const std::string& path);

/// Brings the names of a folder to the disk. A name that a power cut may still take back is no lost file:
/// what fails is kept for `takeWarnings` and not raised. File systems that know no such thing count as done.
void syncFolder(const std::string& folder);
/// What was to be told beside successes since this was last asked, a sentence each.
[[nodiscard]] std::vector<std::string> takeWarnings();

/// `path` with the current folder before it where it has none; links stay.
[[nodiscard]] std::string wholePath(const std::string& path);
/// The user's home folder.
[[nodiscard]] std::string homeFolder();
/// The program file that this process runs; empty when the system does not tell.
[[nodiscard]] std::string ownBinary();
[[nodiscard]] std::string processId();

} // namespace files
