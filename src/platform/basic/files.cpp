#include "files.h"

#include "replacement.h"
#include "runtime_error.h"

#include <array>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace basic {
namespace {

int copyError(int errorCode) {
    switch (errorCode) {
    case EACCES:
    case EPERM:
    case EROFS:
        return PermissionDenied;
    case ENOENT:
        return FileNotFound;
    case ENOTDIR:
        return PathNotFound;
    default:
        return DeviceIoError;
    }
}

int openError(FileAction action, int errorCode) {
    switch (errorCode) {
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return PathFileAccessError;
    case ENOENT:
        return action == FileAction::OpenForInput ? FileNotFound : PathNotFound;
    case ENOTDIR:
        return PathNotFound;
    default:
        return DeviceIoError;
    }
}

int folderError(int errorCode) {
    switch (errorCode) {
    case EEXIST:
    case EACCES:
    case EPERM:
    case EROFS:
        return PathFileAccessError;
    case ENOENT:
    case ENOTDIR:
        return PathNotFound;
    default:
        return DeviceIoError;
    }
}

int removeError(int errorCode) {
    switch (errorCode) {
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return PathFileAccessError;
    case ENOENT:
        return FileNotFound;
    case ENOTDIR:
        return PathNotFound;
    default:
        return DeviceIoError;
    }
}

std::string home() {
    if (const char* folder = std::getenv("HOME"); folder != nullptr && *folder != 0) return folder;
    const passwd* user = getpwuid(geteuid());
    return user != nullptr ? user->pw_dir : "/";
}

mode_t modeOf(std::string_view path) {
    struct stat found {};
    return stat(nativePath(path).c_str(), &found) == 0 ? found.st_mode : 0;
}

} // namespace

void raiseFileError(FileAction action, int errorCode) {
    if (errorCode == ENOSPC || errorCode == EDQUOT) throw RuntimeError(DiskFull);
    switch (action) {
    case FileAction::Copy:
        throw RuntimeError(copyError(errorCode));
    case FileAction::OpenForInput:
    case FileAction::OpenForOutput:
        throw RuntimeError(openError(action, errorCode));
    case FileAction::MakeFolder:
        throw RuntimeError(folderError(errorCode));
    case FileAction::Remove:
        throw RuntimeError(removeError(errorCode));
    }
    throw RuntimeError(DeviceIoError);
}

std::string nativePath(std::string_view path) {
    if (path.size() < 2 || path[1] != ':' || std::isalpha(static_cast<unsigned char>(path[0])) == 0)
        return std::string(path);
    std::string_view rest = path.substr(2);
    while (!rest.empty() && (rest.front() == '\\' || rest.front() == '/'))
        rest.remove_prefix(1);
    std::string result = home();
    if (!rest.empty()) result.append("/").append(rest);
    for (std::size_t at = result.size() - rest.size(); at < result.size(); ++at) {
        if (result[at] == '\\') result[at] = '/';
    }
    return result;
}

std::string baseName(std::string_view path) {
    const auto separator = path.find_last_of("/\\");
    return std::string(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

bool fileExists(std::string_view path) {
    const mode_t mode = modeOf(path);
    return mode != 0 && !S_ISDIR(mode);
}

bool folderExists(std::string_view path) {
    return S_ISDIR(modeOf(path));
}

void fileCopy(std::string_view from, std::string_view to) {
    const Descriptor source(open(nativePath(from).c_str(), O_RDONLY | O_CLOEXEC));
    if (source.get() < 0) raiseFileError(FileAction::Copy, errno);
    struct stat found {};
    if (fstat(source.get(), &found) != 0) raiseFileError(FileAction::Copy, errno);
    if (S_ISDIR(found.st_mode)) throw RuntimeError(PathFileAccessError);
    Replacement target(nativePath(to), FileAction::Copy);
    std::array<char, 65536> buffer{};
    for (;;) {
        const ssize_t count = read(source.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) raiseFileError(FileAction::Copy, errno);
        if (count == 0) break;
        target.write({buffer.data(), static_cast<std::size_t>(count)});
    }
    target.commit();
}

void makeFolder(std::string_view path) {
    if (mkdir(nativePath(path).c_str(), 0777) != 0) raiseFileError(FileAction::MakeFolder, errno);
}

void kill(std::string_view path) {
    if (unlink(nativePath(path).c_str()) != 0) raiseFileError(FileAction::Remove, errno);
}

} // namespace basic
