#include "sibling.h"

#include "error.h"
#include "folder.h"

#include <cerrno>

namespace files {

namespace {

constexpr std::string_view prefix = ".zavrogrl-";
constexpr std::string_view ending = ".tmp";

std::string inFolderOf(const std::string& path, const std::string& name) {
    return path.substr(0, path.rfind('/') + 1) + name; // npos + 1 is 0: no folder
}

bool isGone(const OpenFile& file, const std::string& path) {
    const std::optional<Status> there = statusOfName(path);
    return !there || there->id != file.status().id;
}

/// Removes a sibling that no process holds. What cannot be asked or removed stays.
void removeLeftOver(const std::string& path) {
    try {
        const OpenFile file(path, OpenFor::ReadingNoLink);
        if (file.status().kind != Status::Kind::Plain) return;
        if (lockUnshared(file) && !isGone(file, path)) remove(path);
    } catch (const Error&) {
        return;
    }
}

bool isSiblingName(const std::string& name) {
    return name.starts_with(prefix) && name.ends_with(ending);
}

void removeLeftOvers(const std::string& beside) {
    try {
        for (const std::string& name : namesIn(folderOf(beside)))
            if (isSiblingName(name)) removeLeftOver(inFolderOf(beside, name));
    } catch (const Error&) {
        return; // a folder that may be written but not listed
    }
}

} // namespace

Sibling::Sibling(const std::string& beside, unsigned rights) {
    static unsigned count = 0;
    removeLeftOvers(beside);
    for (int tries = 0; tries < 100; ++tries) {
        const std::string path = inFolderOf(beside, std::string(prefix) + processId() + '-' +
                                                        std::to_string(++count) + std::string(ending));
        try {
            m_file = OpenFile(path, OpenFor::Making, rights);
            m_path = path;
            m_lock = lock(m_file, LockFor::Writing);
            if (!isGone(m_file, path)) return;
        } catch (const Error& error) {
            // Another process of that number on a shared folder, or one that took ours for a left-over one.
            if (error.code() != EEXIST && error.code() != EWOULDBLOCK) {
                if (!m_path.empty()) removeQuietly(m_path);
                throw;
            }
        }
    }
    throw Error(EEXIST, beside);
}

Sibling::Sibling(Sibling&& other) noexcept
    : m_path(std::exchange(other.m_path, {})),
      m_file(std::move(other.m_file)),
      m_lock(std::move(other.m_lock)) {}

Sibling::~Sibling() {
    if (!m_path.empty()) removeQuietly(m_path);
}

bool Sibling::isReplaced() const {
    return isGone(m_file, m_path);
}

void Sibling::moveTo(const std::string& target, Onto onto) {
    const std::optional<Status> replaced = onto == Onto::Anything ? statusOfName(target) : std::nullopt;
    if (onto == Onto::Anything)
        rename(m_path, target);
    else
        renameToFree(m_path, target);
    m_path.clear();
    if (replaced) m_lock = takeOver(replaced->id, std::move(m_lock));
    if (!isSiblingName(target.substr(target.rfind('/') + 1))) syncFolder(folderOf(target));
}

} // namespace files
