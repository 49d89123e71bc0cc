#include "replacement.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace basic {
namespace {

std::string behindLinks(const std::string& path) {
    const std::unique_ptr<char, decltype(&free)> real(realpath(path.c_str(), nullptr), &free);
    return real ? std::string(real.get()) : path;
}

// Nothing yet, or a plain file: written through a sibling. A folder counts too, so that opening refuses it.
bool wantsSibling(const std::string& path) {
    struct stat found {};
    return stat(path.c_str(), &found) != 0 || S_ISREG(found.st_mode);
}

std::string siblingOf(const std::string& path) {
    static unsigned count = 0;
    return path + "." + std::to_string(getpid()) + "-" + std::to_string(++count) + ".tmp";
}

int openTarget(const std::string& path, const std::string& sibling) {
    if (sibling.empty()) return open(path.c_str(), O_WRONLY | O_CLOEXEC);
    struct stat found {};
    const bool exists = stat(path.c_str(), &found) == 0;
    if (exists && ((found.st_mode & S_IWUSR) == 0 || access(path.c_str(), W_OK) != 0)) {
        errno = EACCES;
        return -1;
    }
    const int descriptor = open(sibling.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor >= 0 && exists) {
        // Keeping the owner needs rights that the user may not have; the mode is set last, as chown clears
        // bits.
        if (fchown(descriptor, found.st_uid, found.st_gid) != 0) errno = 0;
        if (fchmod(descriptor, found.st_mode & 07777) != 0) errno = 0;
    }
    return descriptor;
}

} // namespace

Descriptor::~Descriptor() {
    if (m_descriptor >= 0) ::close(m_descriptor);
}

int Descriptor::close() {
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    return ::close(descriptor);
}

Replacement::Replacement(const std::string& path, FileAction action)
    : m_action(action),
      m_path(behindLinks(path)),
      m_sibling(wantsSibling(m_path) ? siblingOf(m_path) : std::string()),
      m_descriptor(openTarget(m_path, m_sibling)) {
    if (m_descriptor.get() >= 0) return;
    const int errorCode = errno;
    m_sibling.clear();
    fail(errorCode);
}

Replacement::~Replacement() {
    if (!m_sibling.empty()) unlink(m_sibling.c_str());
}

void Replacement::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_descriptor.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail(errno);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void Replacement::commit() {
    if (!m_sibling.empty() && fsync(m_descriptor.get()) != 0) fail(errno);
    if (m_descriptor.close() != 0) fail(errno);
    if (m_sibling.empty()) return;
    if (rename(m_sibling.c_str(), m_path.c_str()) != 0) fail(errno);
    m_sibling.clear();
}

void Replacement::fail(int errorCode) const {
    // While copying, a missing name on the target's side is its folder.
    if (m_action == FileAction::Copy && errorCode == ENOENT) errorCode = ENOTDIR;
    raiseFileError(m_action, errorCode);
}

} // namespace basic
