#include "file_lock.h"

#include "error.h"

#include <cerrno>
#include <fcntl.h>
#include <map>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace jet {

namespace {

using FileId = std::pair<dev_t, ino_t>;

std::map<FileId, std::weak_ptr<FileLock>>& heldLocks() {
    static std::map<FileId, std::weak_ptr<FileLock>> held;
    return held;
}

} // namespace

class FileLock {
  public:
    FileLock(int descriptor, FileId id) : m_descriptor(descriptor), m_id(id) {}
    /// A process that was forked off has a copy of this object, but is another process.
    [[nodiscard]] bool ours() const { return m_process == ::getpid(); }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock() {
        if (const auto found = heldLocks().find(m_id); found != heldLocks().end() && found->second.expired())
            heldLocks().erase(found);
        ::close(m_descriptor);
    }
    [[nodiscard]] int descriptor() const { return m_descriptor; }

  private:
    int m_descriptor; ///< a copy: the lock lives as long as any copy is open
    FileId m_id;
    pid_t m_process = ::getpid();
};

std::shared_ptr<FileLock> lockFile(int descriptor, OpenMode mode, const std::string& path) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) return nullptr;
    const FileId id{status.st_dev, status.st_ino};
    const auto found = heldLocks().find(id);
    std::shared_ptr<FileLock> lock = found == heldLocks().end() ? nullptr : found->second.lock();
    if (lock && !lock->ours()) lock.reset();
    const int kind = mode == OpenMode::ReadOnly ? LOCK_SH : LOCK_EX;
    // One of ours that only reads may have to become one that writes, never the other way round.
    const bool wanted = !lock || kind == LOCK_EX;
    if (wanted && ::flock(lock ? lock->descriptor() : descriptor, kind | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK) return lock;
        throw Error(ErrorKind::InUse, "The file '" + path + "' is in use by another program.");
    }
    if (lock) return lock;
    const int copy = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (copy < 0) return nullptr;
    lock = std::make_shared<FileLock>(copy, id);
    heldLocks()[id] = lock;
    return lock;
}

} // namespace jet
