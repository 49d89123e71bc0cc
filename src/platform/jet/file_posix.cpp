#include "error.h"
#include "file.h"
#include "file_lock.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace jet {

namespace {

[[noreturn]] void fail(int code, const std::string& path) {
    const std::string tail = " '" + path + "'.";
    switch (code) {
    case ENOENT:
        throw Error(ErrorKind::FileNotFound, "Could not find file" + tail);
    case ENOTDIR:
        throw Error(ErrorKind::FolderNotFound, "Not a valid path:" + tail);
    case EACCES:
    case EPERM:
        throw Error(ErrorKind::PermissionDenied, "No permission for" + tail);
    case EROFS:
        throw Error(ErrorKind::ReadOnly, "The file system is read-only:" + tail);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        throw Error(ErrorKind::Full, "There is not enough space on the disk for" + tail);
    default:
        throw Error(ErrorKind::Io, std::string(std::strerror(code)) + ":" + tail);
    }
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// An open file, closed at the end.
class Handle {
  public:
    Handle() = default;
    explicit Handle(int number) : m_number(number) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { reset(); }
    void reset(int number = -1) {
        if (m_number >= 0) ::close(m_number);
        m_number = number;
    }
    int release() { return std::exchange(m_number, -1); }
    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] bool valid() const { return m_number >= 0; }

  private:
    int m_number = -1;
};

bool sameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// The first page of a file, as far as there is one.
std::vector<std::uint8_t> startOf(int descriptor) {
    std::vector<std::uint8_t> bytes(4096);
    const ssize_t count = ::pread(descriptor, bytes.data(), bytes.size(), 0);
    bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    return bytes;
}

class PosixFile : public File {
  public:
    PosixFile(std::string path, OpenMode mode);
    explicit PosixFile(std::string path);
    ~PosixFile() override { PosixFile::abandonReplace(); }

    std::uint64_t size() override;
    void read(std::uint64_t offset, std::span<std::uint8_t> into) override;
    void beginReplace() override;
    void keep(std::uint64_t offset, std::uint64_t length) override;
    void append(std::span<const std::uint8_t> bytes) override;
    void finishReplace() override;
    void abandonReplace() noexcept override;

  private:
    void openContent();
    void requireUnchanged();
    void openSibling();
    void moveSibling();
    void takeOverAttributes() const;

    std::string m_path;
    Handle m_file; ///< the content as it is; invalid as long as there is none
    std::shared_ptr<FileLock> m_lock;
    struct stat m_seen {};             ///< what it looked like when it was opened
    std::vector<std::uint8_t> m_start; ///< its first bytes then
    Handle m_next;                     ///< the replacement
    std::string m_nextPath;            ///< empty = none
};

PosixFile::PosixFile(std::string path, OpenMode mode) : m_path(std::move(path)) {
    constexpr int mostTries = 10;
    for (int tries = 0; tries < mostTries; ++tries) {
        openContent();
        m_lock = lockFile(m_file.number(), mode, m_path);
        // Another process may have replaced the file before the lock was ours.
        struct stat now {};
        if (::stat(m_path.c_str(), &now) == 0 && sameFile(now, m_seen)) break;
    }
    m_start = startOf(m_file.number());
}

void PosixFile::openContent() {
    // Without O_NONBLOCK a pipe of that name would wait for a writer.
    m_file.reset(::open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!m_file.valid()) {
        const int code = errno;
        if (code == ENOENT && ::access(folderOf(m_path).c_str(), F_OK) != 0)
            throw Error(ErrorKind::FolderNotFound, "Not a valid path: '" + m_path + "'.");
        fail(code, m_path);
    }
    // A replacement goes beside the file itself, not beside a link to it.
    if (char* real = ::realpath(m_path.c_str(), nullptr)) {
        m_path = real;
        std::free(real);
    }
    if (::fstat(m_file.number(), &m_seen) != 0) fail(errno, m_path);
    if (!S_ISREG(m_seen.st_mode)) throw Error(ErrorKind::NotADatabase, "'" + m_path + "' is not a file.");
}

PosixFile::PosixFile(std::string path) : m_path(std::move(path)) {
    if (::access(m_path.c_str(), F_OK) == 0)
        throw Error(ErrorKind::AlreadyExists, "The file '" + m_path + "' already exists.");
    if (::access(folderOf(m_path).c_str(), F_OK) != 0)
        throw Error(ErrorKind::FolderNotFound, "Not a valid path: '" + m_path + "'.");
}

std::uint64_t PosixFile::size() {
    return m_file.valid() ? static_cast<std::uint64_t>(m_seen.st_size) : 0;
}

void PosixFile::read(std::uint64_t offset, std::span<std::uint8_t> into) {
    while (!into.empty()) {
        const ssize_t count = ::pread(m_file.number(), into.data(), into.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail(errno, m_path);
        if (count == 0) throw Error(ErrorKind::Io, "The file '" + m_path + "' ends too early.");
        into = into.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
}

/// Refuses when the path holds something else than what was opened. Besides the usual marks the first bytes
/// are compared: they count the commits of other engines, which may come faster than the clock ticks.
void PosixFile::requireUnchanged() {
    struct stat now {};
    const bool there = ::stat(m_path.c_str(), &now) == 0;
    if (!m_file.valid()) {
        if (there) throw Error(ErrorKind::AlreadyExists, "The file '" + m_path + "' already exists.");
        return;
    }
    const bool same = there && sameFile(now, m_seen) && now.st_size == m_seen.st_size &&
                      now.st_mtim.tv_sec == m_seen.st_mtim.tv_sec &&
                      now.st_mtim.tv_nsec == m_seen.st_mtim.tv_nsec && startOf(m_file.number()) == m_start;
    if (!same)
        throw Error(ErrorKind::ChangedUnderneath,
                    "The file '" + m_path + "' was changed by another program since it was opened.");
    m_seen = now; // its mode and owner may have been changed, which is no reason to refuse
}

/// A sibling of a fixed name: what a crash left behind is found and replaced by the next commit.
void PosixFile::openSibling() {
    const std::size_t name = m_path.rfind('/') + 1; // 0 without a folder
    const std::string path = m_path.substr(0, name) + "." + m_path.substr(name) + ".zavrogrl-new";
    {
        const Handle left(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
        if (left.valid() && ::flock(left.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
            throw Error(ErrorKind::InUse, "The file '" + m_path + "' is in use by another program.");
        if (::unlink(path.c_str()) != 0 && errno != ENOENT) fail(errno, m_path);
    }
    m_next.reset(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!m_next.valid()) fail(errno, m_path);
    m_nextPath = path;
    (void)::flock(m_next.number(), LOCK_EX | LOCK_NB);
}

void PosixFile::beginReplace() {
    abandonReplace();
    requireUnchanged();
    // A rename would succeed on a file that its owner made read-only; that is not what the owner wants.
    if (m_file.valid() && (m_seen.st_mode & S_IWUSR) == 0)
        throw Error(ErrorKind::ReadOnly, "The file '" + m_path + "' is read-only.");
    if (m_file.valid() && ::faccessat(AT_FDCWD, m_path.c_str(), W_OK, AT_EACCESS) != 0) fail(errno, m_path);
    openSibling();
}

void PosixFile::keep(std::uint64_t offset, std::uint64_t length) {
    std::vector<std::uint8_t> buffer(std::min<std::uint64_t>(length, std::uint64_t{1} << 20));
    while (length != 0) {
        const std::span<std::uint8_t> part(buffer.data(), std::min<std::uint64_t>(length, buffer.size()));
        read(offset, part);
        append(part);
        offset += part.size();
        length -= part.size();
    }
}

void PosixFile::append(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_next.number(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail(errno, m_nextPath);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
}

/// The replacement belongs to whom the file belonged, with the same rights.
void PosixFile::takeOverAttributes() const {
    if (!m_file.valid()) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        if (::fchmod(m_next.number(), 0666 & ~mask) != 0) fail(errno, m_nextPath);
        return;
    }
    struct stat fresh {};
    if (::fstat(m_next.number(), &fresh) != 0) fail(errno, m_nextPath);
    if (fresh.st_uid != m_seen.st_uid || fresh.st_gid != m_seen.st_gid) {
        // Without the right to give a file away, the group alone may still be kept.
        if (::fchown(m_next.number(), m_seen.st_uid, m_seen.st_gid) != 0 &&
            ::fchown(m_next.number(), static_cast<uid_t>(-1), m_seen.st_gid) != 0 && errno != EPERM)
            fail(errno, m_nextPath);
    }
    if (::fchmod(m_next.number(), m_seen.st_mode & 07777) != 0) fail(errno, m_nextPath);
}

void PosixFile::finishReplace() {
    takeOverAttributes();
    if (::fsync(m_next.number()) != 0) fail(errno, m_nextPath);
    std::shared_ptr<FileLock> lock = lockFile(m_next.number(), OpenMode::ReadWrite, m_nextPath);
    std::vector<std::uint8_t> start = startOf(m_next.number());
    requireUnchanged();
    struct stat seen {};
    if (::fstat(m_next.number(), &seen) != 0) fail(errno, m_nextPath);
    moveSibling();
    // From here on the new content is in place: nothing may fail any more.
    m_nextPath.clear();
    m_file.reset(m_next.release());
    m_lock = std::move(lock);
    m_start = std::move(start);
    m_seen = seen;
    const Handle folder(::open(folderOf(m_path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.valid()) (void)::fsync(folder.number());
}

void PosixFile::moveSibling() {
    if (m_file.valid()) {
        if (::rename(m_nextPath.c_str(), m_path.c_str()) != 0) fail(errno, m_path);
        return;
    }
    // A new file must not replace one that appeared meanwhile. Not every file system knows links.
    if (::link(m_nextPath.c_str(), m_path.c_str()) == 0) {
        (void)::unlink(m_nextPath.c_str());
        return;
    }
    if (errno == EEXIST) throw Error(ErrorKind::AlreadyExists, "The file '" + m_path + "' already exists.");
    if (::rename(m_nextPath.c_str(), m_path.c_str()) != 0) fail(errno, m_path);
}

void PosixFile::abandonReplace() noexcept {
    m_next.reset();
    if (!m_nextPath.empty()) (void)::unlink(m_nextPath.c_str());
    m_nextPath.clear();
}

} // namespace

std::unique_ptr<File> openFile(const std::string& path, OpenMode mode) {
    return std::make_unique<PosixFile>(path, mode);
}

std::unique_ptr<File> newFile(const std::string& path) {
    return std::make_unique<PosixFile>(path);
}

} // namespace jet
