#include "status.h"

#include "error.h"
#include "stat_buffer.h"
#include "watch.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace files {

Status statusFrom(const struct stat& found) {
    Status status;
    status.kind = S_ISREG(found.st_mode)   ? Status::Kind::Plain
                  : S_ISDIR(found.st_mode) ? Status::Kind::Folder
                  : S_ISLNK(found.st_mode) ? Status::Kind::Link
                                           : Status::Kind::Other;
    status.id = {found.st_dev, found.st_ino};
    status.mode = found.st_mode & 07777;
    status.owner = found.st_uid;
    status.group = found.st_gid;
    status.names = found.st_nlink;
    status.size = static_cast<std::uint64_t>(found.st_size);
    status.seconds = found.st_mtim.tv_sec;
    status.nanoseconds = found.st_mtim.tv_nsec;
    return status;
}

namespace {

std::optional<Status> ask(const std::string& path, int flags) {
    struct stat found {};
    if (allowed(Call::Status, path) && ::fstatat(AT_FDCWD, path.c_str(), &found, flags) == 0)
        return statusFrom(found);
    if (errno == ENOENT || errno == ENOTDIR) return std::nullopt;
    throw Error(errno, path);
}

} // namespace

std::optional<Status> statusOf(const std::string& path) {
    return ask(path, 0);
}

std::optional<Status> statusOfName(const std::string& path) {
    return ask(path, AT_SYMLINK_NOFOLLOW);
}

void requireWritable(const std::string& path, const Status& status) {
    if ((status.mode & S_IWUSR) == 0) throw Error(EACCES, path);
    if (!allowed(Call::Status, path) || ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
        throw Error(errno, path);
}

std::string behindLinks(const std::string& path) {
    namespace fs = std::filesystem;
    constexpr int mostLinks = 40; // as the system counts
    std::error_code failure;
    fs::path place(path);
    for (int links = 0; links < mostLinks; ++links) {
        const std::optional<Status> name = statusOfName(place.string());
        if (!name || name->kind != Status::Kind::Link) break;
        if (!allowed(Call::ResolveLinks, path)) throw Error(errno, path);
        place = place.parent_path() / fs::read_symlink(place, failure); // an absolute one stands alone
        if (failure) throw Error(failure.value(), path);
    }
    const fs::path folder = fs::canonical(folderOf(place.string()), failure);
    return failure ? place.string() : (folder / place.filename()).string();
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace files
