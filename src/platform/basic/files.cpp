#include "files.h"

#include "runtime_error.h"

#include "files/folder.h"

#include <cctype>
#include <cerrno>

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
    case EISDIR:
        return PathFileAccessError;
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
        return action == FileAction::OpenForOutput ? PathNotFound : FileNotFound;
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

/// What stands at `path`; nothing also when that cannot be found out.
std::optional<files::Status> statusOf(std::string_view path) {
    try {
        return files::statusOf(nativePath(path));
    } catch (const files::Error&) {
        return std::nullopt;
    }
}

/// Copying, on the side of the target: a missing name there is its folder.
template <typename Step>
auto duringTarget(const std::string& target, Step&& step) {
    try {
        return step();
    } catch (const files::Error& error) {
        raiseFileError(FileAction::Copy, error.code() == ENOENT ? ENOTDIR : error.code(), target);
    }
}

int numberOf(FileAction action, int errorCode) {
    if (errorCode == ENOSPC || errorCode == EDQUOT) return DiskFull;
    switch (action) {
    case FileAction::Copy:
        return copyError(errorCode);
    case FileAction::OpenForInput:
    case FileAction::OpenForOutput:
    case FileAction::Remove:
        return openError(action, errorCode);
    case FileAction::MakeFolder:
        return folderError(errorCode);
    }
    return DeviceIoError;
}

} // namespace

void raiseFileError(FileAction action, int errorCode, const std::string& path) {
    const int number = numberOf(action, errorCode);
    throw RuntimeError(number, descriptionOf(number), number == PathNotFound ? files::folderOf(path) : path);
}

std::string nativePath(std::string_view path) {
    if (path.size() < 2 || path[1] != ':' || std::isalpha(static_cast<unsigned char>(path[0])) == 0)
        return std::string(path);
    std::string_view rest = path.substr(2);
    while (!rest.empty() && (rest.front() == '\\' || rest.front() == '/'))
        rest.remove_prefix(1);
    std::string result = files::homeFolder();
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
    const std::optional<files::Status> found = statusOf(path);
    return found && found->kind != files::Status::Kind::Folder;
}

bool folderExists(std::string_view path) {
    const std::optional<files::Status> found = statusOf(path);
    return found && found->kind == files::Status::Kind::Folder;
}

files::Replacement readyCopy(std::string_view from, std::string_view to) {
    const files::OpenFile source =
        during(FileAction::Copy, [&] { return files::OpenFile(nativePath(from), files::OpenFor::Reading); });
    const std::string target = nativePath(to);
    return duringTarget(target, [&] {
        if (source.status().kind == files::Status::Kind::Folder) throw files::Error(EISDIR, source.path());
        files::Replacement copy(target);
        copy.copy(source);
        copy.takeRightsNow();
        return copy;
    });
}

void place(files::Replacement& copy) {
    duringTarget(copy.target(), [&] { copy.commit(); });
}

void fileCopy(std::string_view from, std::string_view to) {
    files::Replacement copy = readyCopy(from, to);
    place(copy);
}

void makeFolder(std::string_view path) {
    during(FileAction::MakeFolder, [&] { files::makeFolder(nativePath(path)); });
}

void kill(std::string_view path) {
    during(FileAction::Remove, [&] { files::remove(nativePath(path)); });
}

} // namespace basic
