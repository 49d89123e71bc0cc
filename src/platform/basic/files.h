#pragma once

#include "files/error.h"
#include "files/replacement.h"

#include <string>
#include <string_view>
#include <vector>

// File statements of the Basic run-time library. Paths are UTF-8 texts as the user sees them.

namespace basic {

/// What was being done when a system call failed; decides the error number that its errno becomes.
enum class FileAction { Copy, OpenForInput, OpenForOutput, MakeFolder, Remove };

/// The one place where errno becomes a run-time error.
/// Copy: no permission or read-only file system 70, no source 53, no folder 76, full 61. OpenForOutput: no
/// permission 75. MakeFolder: exists or no permission 75, parent missing 76. Anything else 57. The error
/// names `path`, what was acted on; "Path not found" names the folder that it was to stand in.
[[noreturn]] void raiseFileError(FileAction action, int errorCode, const std::string& path);

/// Runs `step` and raises what its calls to the system fail with by the rule above. The error names `path`
/// where it is given, whatever files beside it the step worked on; else the path of the call.
template <typename Step>
auto during(FileAction action, Step&& step, std::string_view path = {}) {
    try {
        return step();
    } catch (const files::Error& error) {
        raiseFileError(action, error.code(), path.empty() ? error.path() : std::string(path));
    }
}

/// The place on this system that a path text means: "C:\Road" is the folder Road under the user's home, a
/// backslash separates folders there; any other text is used as it is. The one function that does this.
[[nodiscard]] std::string nativePath(std::string_view path);

/// The part behind the last "/" or "\".
[[nodiscard]] std::string baseName(std::string_view path);

[[nodiscard]] bool fileExists(std::string_view path); ///< an existing file that is no folder
[[nodiscard]] bool folderExists(std::string_view path);

/// Copies byte for byte, replacing `to` by a complete copy (written beside it and renamed) or not at all.
/// A `to` that its owner made read-only is refused with PermissionDenied.
void fileCopy(std::string_view from, std::string_view to);

/// The same up to the point where the copy stands whole beside `to`; `place` brings it to the disk and gives
/// it its name.
[[nodiscard]] files::Replacement readyCopy(std::string_view from, std::string_view to);
void place(files::Replacement& copy);

void makeFolder(std::string_view path); ///< one level; see MakeFolder above
void kill(std::string_view path);       ///< deletes a file; FileNotFound when there is none

/// A text file as UTF-8: bytes that are no valid UTF-8 are taken as Windows-1252. At most `limit` bytes are
/// read.
[[nodiscard]] std::string readFile(std::string_view path, std::size_t limit = std::size_t{64} << 20);

/// The lines of a text file without their ends (CR LF, LF) and without a byte-order mark; otherwise as
/// `readFile`.
[[nodiscard]] std::vector<std::string> readLines(std::string_view path,
                                                 std::size_t limit = std::size_t{64} << 20);

/// Writes `lines`, each ended by CR LF, as UTF-8, replacing the file whole.
void writeLines(std::string_view path, const std::vector<std::string>& lines,
                files::Rights rights = files::Rights::Kept);

/// Writes `content` byte for byte, replacing the file whole.
void writeFile(std::string_view path, std::string_view content, files::Rights rights = files::Rights::Kept);

/// `bytes` as UTF-8: unchanged when valid, otherwise read as Windows-1252.
[[nodiscard]] std::string toUtf8(std::string_view bytes);

} // namespace basic
