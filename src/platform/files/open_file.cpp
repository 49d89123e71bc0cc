#include "open_file.h"

#include "error.h"
#include "stat_buffer.h"
#include "watch.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace files {

namespace {

constexpr std::size_t portion = std::size_t{1} << 20;

int flagsOf(OpenFor what) {
    switch (what) {
    case OpenFor::Reading:
        return O_RDONLY;
    case OpenFor::ReadingNoLink:
        return O_RDONLY | O_NOFOLLOW | O_NONBLOCK;
    case OpenFor::Writing:
        return O_WRONLY;
    case OpenFor::Making:
        break;
    }
    return O_RDWR | O_CREAT | O_EXCL;
}

/// `call` until no signal interrupts it.
template <typename Ask>
std::size_t counted(Call call, const std::string& path, Ask&& ask) {
    for (;;) {
        const ssize_t count = allowed(call, path) ? ask() : -1;
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR) throw Error(errno, path);
    }
}

/// Errors by which the system says that it cannot copy between these two files, not that the copy failed.
bool cannotCopy(int code) {
    return code == EXDEV || code == EINVAL || code == ENOSYS || code == EOPNOTSUPP || code == EBADF ||
           code == EPERM;
}

} // namespace

OpenFile::OpenFile(std::string path, OpenFor what, unsigned rights) : m_path(std::move(path)) {
    if (allowed(Call::Open, m_path)) m_number = ::open(m_path.c_str(), flagsOf(what) | O_CLOEXEC, rights);
    if (m_number < 0) throw Error(errno, m_path);
}

OpenFile::OpenFile(OpenFile&& other) noexcept
    : m_path(std::move(other.m_path)), m_number(std::exchange(other.m_number, -1)) {}

OpenFile& OpenFile::operator=(OpenFile&& other) noexcept {
    std::swap(m_path, other.m_path);
    std::swap(m_number, other.m_number);
    return *this;
}

OpenFile::~OpenFile() {
    if (isOpen()) ::close(m_number);
}

OpenFile OpenFile::again() const {
    OpenFile file;
    if (allowed(Call::Open, m_path)) file.m_number = ::fcntl(m_number, F_DUPFD_CLOEXEC, 0);
    if (!file.isOpen()) throw Error(errno, m_path);
    file.m_path = m_path;
    return file;
}

Status OpenFile::status() const {
    struct stat found {};
    if (!allowed(Call::Status, m_path) || ::fstat(m_number, &found) != 0) throw Error(errno, m_path);
    return statusFrom(found);
}

std::size_t OpenFile::read(std::span<std::byte> into) const {
    return counted(Call::Read, m_path, [&] { return ::read(m_number, into.data(), into.size()); });
}

std::size_t OpenFile::readAt(std::uint64_t offset, std::span<std::byte> into) const {
    std::size_t done = 0;
    while (done < into.size()) {
        const std::span<std::byte> rest = into.subspan(done);
        const std::size_t count = counted(Call::Read, m_path, [&] {
            return ::pread(m_number, rest.data(), rest.size(), static_cast<off_t>(offset + done));
        });
        if (count == 0) break;
        done += count;
    }
    return done;
}

void OpenFile::write(std::string_view bytes) const {
    while (!bytes.empty())
        bytes.remove_prefix(
            counted(Call::Write, m_path, [&] { return ::write(m_number, bytes.data(), bytes.size()); }));
}

void OpenFile::copy(const OpenFile& source, std::uint64_t offset, std::uint64_t length) const {
    auto from = static_cast<off_t>(offset);
    while (length != 0) {
        const ssize_t count = allowed(Call::Copy, m_path)
                                  ? ::copy_file_range(source.number(), &from, m_number, nullptr, length, 0)
                                  : -1;
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && !cannotCopy(errno)) throw Error(errno, m_path);
        if (count <= 0) break;
        length -= static_cast<std::uint64_t>(count);
    }
    std::vector<std::byte> buffer(std::min<std::uint64_t>(length, portion));
    while (length != 0) {
        const std::size_t count =
            source.readAt(static_cast<std::uint64_t>(from),
                          std::span(buffer).first(std::min<std::uint64_t>(length, portion)));
        if (count == 0) throw Error(EIO, source.path()); // shorter than it said
        write({reinterpret_cast<const char*>(buffer.data()), count});
        from += static_cast<off_t>(count);
        length -= count;
    }
}

void OpenFile::sync() const {
    if (!allowed(Call::Sync, m_path) || ::fsync(m_number) != 0) throw Error(errno, m_path);
}

void OpenFile::close() {
    const bool may = allowed(Call::Close, m_path);
    const int code = may ? 0 : errno;
    if (::close(std::exchange(m_number, -1)) != 0 || !may) throw Error(may ? errno : code, m_path);
}

std::string contentOf(const OpenFile& file, std::size_t limit) {
    std::string content;
    std::vector<std::byte> buffer(std::size_t{1} << 16);
    while (content.size() < limit) {
        const std::size_t count =
            file.read(std::span(buffer).first(std::min(buffer.size(), limit - content.size())));
        if (count == 0) break;
        content.append(reinterpret_cast<const char*>(buffer.data()), count);
    }
    return content;
}

} // namespace files
