#include "program_folder.h"

#include "basic/files.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <vector>

namespace project {

namespace fs = std::filesystem;

namespace {

constexpr mode_t ownerFolder = 0700;

std::vector<std::string> filesOf(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code unknown;
        if (!entry->is_directory(unknown)) names.push_back(entry->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void makeFolders(const fs::path& folder) {
    std::error_code error;
    if (fs::is_directory(folder, error)) return;
    if (folder.has_parent_path() && folder.parent_path() != folder) makeFolders(folder.parent_path());
    if (mkdir(folder.c_str(), ownerFolder) != 0 && errno != EEXIST)
        basic::raiseFileError(basic::FileAction::MakeFolder, errno);
}

void layIn(const fs::path& folder, const fs::path& shipped) {
    const std::vector<std::string> present = filesOf(folder);
    for (const std::string& name : filesOf(shipped)) {
        const bool there = std::any_of(present.begin(), present.end(), [&name](const std::string& other) {
            return basic::sameText(name, other);
        });
        if (there) continue;
        const std::string target = (folder / name).string();
        basic::fileCopy((shipped / name).string(), target); // renamed into place whole
        std::error_code notOurs;
        fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write, notOurs);
    }
}

} // namespace

std::string programFolder() {
    const char* data = std::getenv("XDG_DATA_HOME");
    if (data != nullptr && *data == '/') return (fs::path(data) / "zavrogrl").string();
    const char* home = std::getenv("HOME");
    const fs::path base(home != nullptr && *home != 0 ? std::string(home) : basic::nativePath("C:\\"));
    return (base / ".local" / "share" / "zavrogrl").string();
}

std::string shippedFolder() {
    std::error_code error;
    const fs::path binary = fs::read_symlink("/proc/self/exe", error);
    return error ? std::string()
                 : (binary.parent_path().parent_path() / "share" / "zavrogrl" / "templates").string();
}

std::string prepareProgramFolder(std::string_view folder, std::string_view shipped) {
    try {
        makeFolders(fs::path(folder));
        layIn(fs::path(folder), fs::path(shipped));
    } catch (const basic::RuntimeError& error) {
        return error.description();
    }
    return {};
}

} // namespace project
