#include "error.h"
#include "file.h"

#include "files/error.h"
#include "files/replacement.h"

#include <cerrno>
#include <cstring>
#include <optional>
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
    case EEXIST:
        throw Error(ErrorKind::AlreadyExists, "The file '" + path + "' already exists.");
    case EWOULDBLOCK:
        throw Error(ErrorKind::InUse, "The file '" + path + "' is in use by another program.");
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        throw Error(ErrorKind::Full, "There is not enough space on the disk for" + tail);
    default:
        throw Error(ErrorKind::Io, std::string(std::strerror(code)) + ":" + tail);
    }
}

/// Runs `step`; what its calls to the system fail with becomes an error about `path`.
template <typename Step>
auto about(const std::string& path, Step&& step) {
    try {
        return step();
    } catch (const files::Error& error) {
        fail(error.code(), path);
    }
}

/// The first page of a file, as far as there is one.
std::vector<std::byte> startOf(const files::OpenFile& file) {
    std::vector<std::byte> bytes(4096);
    bytes.resize(file.readAt(0, bytes));
    return bytes;
}

bool sameContent(const files::Status& a, const files::Status& b) {
    return a.id == b.id && a.size == b.size && a.seconds == b.seconds && a.nanoseconds == b.nanoseconds;
}

class SystemFile : public File {
  public:
    SystemFile(std::string path, OpenMode mode);
    explicit SystemFile(std::string path);

    std::uint64_t size() override { return m_file.isOpen() ? m_seen.size : 0; }
    void read(std::uint64_t offset, std::span<std::uint8_t> into) override;
    void beginReplace() override;
    void keep(std::uint64_t offset, std::uint64_t length) override;
    void append(std::span<const std::uint8_t> bytes) override;
    void finishReplace() override;
    void abandonReplace() noexcept override { m_next.reset(); }

  private:
    void openContent();
    void requireUnchanged();

    std::string m_path;
    files::OpenFile m_file; ///< the content as it is; not open as long as there is none
    std::shared_ptr<files::FileLock> m_lock;
    files::Status m_seen;           ///< what it looked like when it was opened
    std::vector<std::byte> m_start; ///< its first bytes then
    std::optional<files::Replacement> m_next;
};

SystemFile::SystemFile(std::string path, OpenMode mode) : m_path(std::move(path)) {
    about(m_path, [&] {
        constexpr int mostTries = 10;
        for (int tries = 0; tries < mostTries; ++tries) {
            openContent();
            m_lock.reset();
            m_lock = files::lock(m_file, mode == OpenMode::ReadOnly ? files::LockFor::Reading
                                                                    : files::LockFor::Writing);
            // Another process may have replaced the file before the lock was ours.
            const std::optional<files::Status> now = files::statusOf(m_path);
            if (now && now->id == m_seen.id) break;
        }
        m_start = startOf(m_file);
    });
}

void SystemFile::openContent() {
    // A replacement goes beside the file itself, not beside a link to it.
    m_path = files::behindLinks(m_path);
    try {
        m_file = files::OpenFile(m_path, files::OpenFor::ReadingNoLink);
    } catch (const files::Error& error) {
        if (error.code() == ENOENT && !files::statusOf(files::folderOf(m_path))) fail(ENOTDIR, m_path);
        throw;
    }
    m_seen = m_file.status();
    if (m_seen.kind != files::Status::Kind::Plain)
        throw Error(ErrorKind::NotADatabase, "'" + m_path + "' is not a file.");
}

SystemFile::SystemFile(std::string path) : m_path(std::move(path)) {
    about(m_path, [&] {
        if (files::statusOf(m_path)) fail(EEXIST, m_path);
        if (!files::statusOf(files::folderOf(m_path))) fail(ENOTDIR, m_path);
    });
}

void SystemFile::read(std::uint64_t offset, std::span<std::uint8_t> into) {
    const std::size_t count =
        about(m_path, [&] { return m_file.readAt(offset, std::as_writable_bytes(into)); });
    if (count < into.size()) throw Error(ErrorKind::Io, "The file '" + m_path + "' ends too early.");
}

/// Refuses when the path holds something else than what was opened. Besides the usual marks the first bytes
/// are compared: they count the commits of other engines, which may come faster than the clock ticks.
void SystemFile::requireUnchanged() {
    const std::optional<files::Status> now = files::statusOf(m_path);
    if (!m_file.isOpen()) {
        if (now) fail(EEXIST, m_path);
        return;
    }
    if (!now || !sameContent(*now, m_seen) || startOf(m_file) != m_start)
        throw Error(ErrorKind::ChangedUnderneath,
                    "The file '" + m_path + "' was changed by another program since it was opened.");
    m_seen = *now; // its mode and owner may have been changed, which is no reason to refuse
}

void SystemFile::beginReplace() {
    abandonReplace();
    about(m_path, [&] {
        requireUnchanged();
        constexpr unsigned ownerWrites = 0200;
        if (m_file.isOpen() && (m_seen.mode & ownerWrites) == 0)
            throw Error(ErrorKind::ReadOnly, "The file '" + m_path + "' is read-only.");
        m_next.emplace(m_path);
    });
}

void SystemFile::keep(std::uint64_t offset, std::uint64_t length) {
    about(m_path, [&] { m_next->copy(m_file, offset, length); });
}

void SystemFile::append(std::span<const std::uint8_t> bytes) {
    about(m_path, [&] { m_next->write({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); });
}

void SystemFile::finishReplace() {
    about(m_path, [&] {
        m_next->finish();
        std::vector<std::byte> start = startOf(m_next->file());
        const files::Status seen = m_next->file().status();
        requireUnchanged();
        using Onto = files::Sibling::Onto;
        m_next->commit(m_file.isOpen() ? Onto::Anything : Onto::Nothing);
        // From here on the new content is in place: nothing may fail any more.
        m_file = m_next->takeFile();
        m_lock = m_next->takeLock();
        m_start = std::move(start);
        m_seen = seen;
    });
    m_next.reset();
}

} // namespace

std::unique_ptr<File> openFile(const std::string& path, OpenMode mode) {
    return std::make_unique<SystemFile>(path, mode);
}

std::unique_ptr<File> newFile(const std::string& path) {
    return std::make_unique<SystemFile>(path);
}

} // namespace jet
