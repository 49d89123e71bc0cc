#include "lock.h"

#include "error.h"
#include "watch.h"

#include <cerrno>
#include <fcntl.h>
#include <map>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace files {

namespace {

std::map<FileId, std::weak_ptr<FileLock>>& heldLocks() {
    static std::map<FileId, std::weak_ptr<FileLock>> held;
    return held;
}

} // namespace

class FileLock {
  public:
    FileLock(int copy, FileId id) : m_copy(copy), m_id(id) {}
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock() { letGo(); }

    [[nodiscard]] int number() const { return m_copy; }
    [[nodiscard]] const FileId& id() const { return m_id; }
    /// A process that was forked off has a copy of this object, but is another process.
    [[nodiscard]] bool ours() const { return m_process == ::getpid(); }
    void become(int copy, FileId id) {
        letGo();
        m_copy = copy;
        m_id = id;
    }

  private:
    void letGo() {
        if (const auto found = heldLocks().find(m_id); found != heldLocks().end()) {
            const std::shared_ptr<FileLock> other = found->second.lock();
            if (!other || other.get() == this) heldLocks().erase(found);
        }
        ::close(m_copy);
    }

    int m_copy; ///< of the descriptor: the lock lives as long as any copy is open
    FileId m_id;
    pid_t m_process = ::getpid();
};

namespace {

std::shared_ptr<FileLock> heldOn(const FileId& id) {
    const auto found = heldLocks().find(id);
    std::shared_ptr<FileLock> held = found == heldLocks().end() ? nullptr : found->second.lock();
    if (held && !held->ours()) held.reset();
    return held;
}

} // namespace

std::shared_ptr<FileLock> lock(const OpenFile& file, LockFor what) {
    const FileId id = file.status().id;
    std::shared_ptr<FileLock> held = heldOn(id);
    // One of ours that only reads may have to become one that writes, never the other way round.
    if (!held || what == LockFor::Writing) {
        const int kind = what == LockFor::Reading ? LOCK_SH : LOCK_EX;
        if (!allowed(Call::Lock, file.path()) ||
            ::flock(held ? held->number() : file.number(), kind | LOCK_NB) != 0) {
            if (errno == EWOULDBLOCK) throw Error(errno, file.path());
            return held;
        }
    }
    if (held) return held;
    const int copy = ::fcntl(file.number(), F_DUPFD_CLOEXEC, 0);
    if (copy < 0) return nullptr;
    held = std::make_shared<FileLock>(copy, id);
    heldLocks()[id] = held;
    return held;
}

bool lockUnshared(const OpenFile& file) {
    return allowed(Call::Lock, file.path()) && ::flock(file.number(), LOCK_EX | LOCK_NB) == 0;
}

std::shared_ptr<FileLock> takeOver(const FileId& replaced, std::shared_ptr<FileLock> held) {
    std::shared_ptr<FileLock> older = heldOn(replaced);
    if (!older || !held || older == held) return held;
    const int copy = ::fcntl(held->number(), F_DUPFD_CLOEXEC, 0);
    if (copy < 0) return held;
    older->become(copy, held->id());
    heldLocks()[held->id()] = older;
    return older;
}

} // namespace files
