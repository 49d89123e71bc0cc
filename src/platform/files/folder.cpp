#include "folder.h"

#include "error.h"
#include "status.h"
#include "watch.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace files {

namespace {

std::vector<std::string>& warnings() {
    static std::vector<std::string> all;
    return all;
}

void require(bool good, const std::string& path) {
    if (!good) throw Error(errno, path);
}

/// The file system knows no exclusive rename, or no links.
bool unknownThere(int code) {
    return code == EINVAL || code == ENOSYS || code == EOPNOTSUPP || code == EPERM || code == EMLINK;
}

} // namespace

std::vector<std::string> namesIn(const std::string& folder) {
    require(allowed(Call::ListFolder, folder), folder);
    std::vector<std::string> names;
    std::error_code failure;
    for (std::filesystem::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure))
        names.push_back(entry->path().filename().string());
    if (failure) throw Error(failure.value(), folder);
    return names;
}

void makeFolder(const std::string& path, unsigned rights) {
    require(allowed(Call::MakeFolder, path) && ::mkdir(path.c_str(), rights) == 0, path);
}

void remove(const std::string& path) {
    require(allowed(Call::Remove, path) && ::unlink(path.c_str()) == 0, path);
}

void removeQuietly(const std::string& path) noexcept {
    if (allowed(Call::Remove, path)) (void)::unlink(path.c_str());
}

void rename(const std::string& from, const std::string& to) {
    require(allowed(Call::Rename, to) && std::rename(from.c_str(), to.c_str()) == 0, to);
}

void renameToFree(const std::string& from, const std::string& to) {
    require(allowed(Call::Rename, to), to);
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return;
    require(unknownThere(errno), to);
    require(allowed(Call::Link, to), to);
    if (::link(from.c_str(), to.c_str()) == 0) return removeQuietly(from);
    require(unknownThere(errno), to);
    if (statusOfName(to)) throw Error(EEXIST, to);
    rename(from, to);
}

void makePrivate(const std::string& path) {
    require(allowed(Call::SetMode, path) && ::chmod(path.c_str(), S_IRUSR | S_IWUSR) == 0, path);
}

void syncFolder(const std::string& folder) {
    int code = 0;
    const int number = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (number < 0 || !allowed(Call::SyncFolder, folder) || ::fsync(number) != 0) code = errno;
    if (number >= 0) ::close(number);
    if (code != 0 && code != EINVAL && code != ENOSYS && code != EOPNOTSUPP && code != EBADF)
        warnings().push_back("The folder " + folder + " could not be brought to the disk (" +
                             std::generic_category().message(code) +
                             "); a power cut may undo the last change.");
}

std::vector<std::string> takeWarnings() {
    return std::exchange(warnings(), {});
}

std::string wholePath(const std::string& path) {
    std::error_code failure;
    const std::filesystem::path whole = std::filesystem::absolute(path, failure);
    return failure ? path : whole.string();
}

std::string homeFolder() {
    if (const char* folder = std::getenv("HOME"); folder != nullptr && *folder != 0) return folder;
    const passwd* user = ::getpwuid(::geteuid());
    return user != nullptr ? user->pw_dir : "/";
}

std::string ownBinary() {
    std::error_code failure;
    const std::filesystem::path binary = std::filesystem::read_symlink("/proc/self/exe", failure);
    return failure ? std::string() : binary.string();
}

std::string processId() {
    return std::to_string(::getpid());
}

} // namespace files
