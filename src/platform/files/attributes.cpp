#include "attributes.h"

#include "error.h"
#include "stat_buffer.h"
#include "watch.h"

#include <algorithm>
#include <cerrno>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace files {

namespace {

constexpr std::string_view accessList = "system.posix_acl_access";
constexpr unsigned noId = static_cast<unsigned>(-1);

bool setOwner(const OpenFile& file, unsigned owner, unsigned group) {
    if (allowed(Call::SetOwner, file.path()) && ::fchown(file.number(), owner, group) == 0) return true;
    if (errno != EPERM && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
        throw Error(errno, file.path());
    return false;
}

void setMode(const OpenFile& file, unsigned mode) {
    if (!allowed(Call::SetMode, file.path()) || ::fchmod(file.number(), mode) != 0)
        throw Error(errno, file.path());
}

/// `ask` with a buffer that is large enough; empty when there is nothing.
template <typename Ask>
std::string sized(const OpenFile& file, Ask&& ask) {
    for (;;) {
        if (!allowed(Call::Attribute, file.path())) throw Error(errno, file.path());
        const ssize_t size = ask(nullptr, 0);
        if (size <= 0) return {};
        std::string bytes(static_cast<std::size_t>(size), '\0');
        const ssize_t got = ask(bytes.data(), bytes.size());
        if (got < 0 && errno == ERANGE) continue; // it grew in between
        bytes.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
        return bytes;
    }
}

std::vector<std::string> attributesOf(const OpenFile& file) {
    const std::string list =
        sized(file, [&](char* into, std::size_t size) { return ::flistxattr(file.number(), into, size); });
    std::vector<std::string> names;
    for (std::size_t at = 0; at < list.size(); at += names.back().size() + 1)
        names.emplace_back(list.c_str() + at);
    return names;
}

void copyAttribute(const OpenFile& file, const OpenFile& model, const std::string& name) {
    const std::string value = sized(model, [&](char* into, std::size_t size) {
        return ::fgetxattr(model.number(), name.c_str(), into, size);
    });
    if (!allowed(Call::Attribute, file.path()) ||
        ::fsetxattr(file.number(), name.c_str(), value.data(), value.size(), 0) != 0) {
        // What only the system or an administrator may set stays as the system has set it.
        if (errno != EPERM && errno != EACCES && errno != EOPNOTSUPP) throw Error(errno, file.path());
    }
}

} // namespace

void takeRights(const OpenFile& file, const Status& model, const OpenFile& source) {
    const Status fresh = file.status();
    const bool ownerKept = fresh.owner == model.owner || setOwner(file, model.owner, noId);
    const bool groupKept = fresh.group == model.group || setOwner(file, noId, model.group);
    const std::vector<std::string> wanted =
        source.isOpen() ? attributesOf(source) : std::vector<std::string>();
    const std::vector<std::string> there = attributesOf(file);
    for (const std::string& name : wanted)
        if (name != accessList || groupKept) copyAttribute(file, source, name);
    const bool keepsList = groupKept && std::find(wanted.begin(), wanted.end(), accessList) != wanted.end();
    if (!keepsList && std::find(there.begin(), there.end(), accessList) != there.end())
        (void)::fremovexattr(file.number(), accessList.data()); // the folder's own list is not the file's
    // Last: a change of owner clears the bits above the rights.
    unsigned mode = model.mode;
    if (!ownerKept || !groupKept) mode &= 0777U;
    if (!groupKept) mode &= ~unsigned{S_IRWXG} | ((mode & S_IRWXO) << 3U);
    setMode(file, mode);
}

} // namespace files
