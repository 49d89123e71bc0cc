#include "new_file.h"

#include "basic/files.h"
#include "basic/strings.h"
#include "project_file.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace project {

namespace {

/// The byte where the last `characters` characters begin, or npos when there are fewer.
std::size_t tailOf(std::string_view text, int characters) {
    std::size_t at = text.size();
    while (characters > 0) {
        if (at == 0) return std::string_view::npos;
        --at;
        if ((static_cast<unsigned char>(text[at]) & 0xC0) != 0x80) --characters;
    }
    return at;
}

void refuseUnlessReplaceable(const std::string& target) {
    struct stat is {};
    if (stat(target.c_str(), &is) != 0) return;
    if (S_ISDIR(is.st_mode)) throw basic::RuntimeError(basic::PathFileAccessError);
    if ((is.st_mode & S_IWUSR) == 0 || access(target.c_str(), W_OK) != 0)
        throw basic::RuntimeError(basic::PermissionDenied);
}

/// Beside `target`, so that one rename brings it there; short, so that a long name leaves room.
std::string siblingOf(const std::string& target) {
    static int count = 0;
    const std::size_t slash = target.rfind('/');
    const std::string folder = slash == std::string::npos ? std::string() : target.substr(0, slash + 1);
    return folder + ".zavrogrl-" + std::to_string(getpid()) + '-' + std::to_string(++count) + ".tmp";
}

} // namespace

std::string fixExtension(std::string path) {
    const std::size_t tail = tailOf(path, 4);
    if (tail != std::string::npos) {
        if (basic::sameText(std::string_view(path).substr(tail), ".grl")) return path;
        if (path[tail] == '.') return path.replace(tail + 1, std::string::npos, "grl");
    }
    return path + "grl";
}

NewFile::NewFile(desktop::Desktop& desktop, std::string_view target) : m_target(basic::nativePath(target)) {
    std::error_code none;
    if (std::filesystem::is_symlink(m_target, none))
        m_target = std::filesystem::weakly_canonical(m_target, none).string();
    refuseUnlessReplaceable(m_target);
    m_path = siblingOf(m_target);
    basic::fileCopy(desktop::programFile(desktop, templateName), m_path);
    struct stat replaced {};
    if (stat(m_target.c_str(), &replaced) == 0) chmod(m_path.c_str(), replaced.st_mode & 07777);
}

NewFile::NewFile(NewFile&& other) noexcept
    : m_target(std::move(other.m_target)), m_path(std::exchange(other.m_path, {})) {}

NewFile::~NewFile() {
    if (!m_path.empty()) unlink(m_path.c_str());
}

void NewFile::commit(desktop::Desktop& desktop) {
    if (basic::fileExists(m_target)) desktop.moveToTrash(m_target);
    if (std::rename(m_path.c_str(), m_target.c_str()) != 0)
        basic::raiseFileError(basic::FileAction::Copy, errno);
    m_path.clear();
}

} // namespace project
