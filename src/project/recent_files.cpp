#include "recent_files.h"

#include "basic/files.h"
#include "files/folder.h"
#include "files/status.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <vector>

namespace project {

namespace {

using Entries = std::array<std::string, 4>;

std::string listFile(desktop::Desktop& desktop) {
    return desktop::programFile(desktop, "GRL.LVX");
}

/// A relative name would be another file's in another folder; one with a drive is whole.
std::string wholePath(const std::string& path) {
    if (basic::nativePath(path) != path) return path;
    return std::filesystem::path(files::wholePath(path)).lexically_normal().string();
}

/// A missing list is an empty one; one that is there and cannot be read is not.
Entries readList(desktop::Desktop& desktop) {
    Entries entries;
    const std::string file = listFile(desktop);
    const auto there = basic::during(basic::FileAction::OpenForInput,
                                     [&] { return files::statusOf(basic::nativePath(file)); });
    if (!there) return entries;
    std::vector<std::string> lines = basic::readLines(file);
    std::move(lines.begin(),
              lines.begin() + static_cast<std::ptrdiff_t>(std::min(lines.size(), entries.size())),
              entries.begin());
    return entries;
}

} // namespace

void mNu(Book& book, desktop::Desktop& desktop) {
    try {
        Entries entries = readList(desktop);
        for (std::size_t k = 0; k < entries.size(); ++k)
            if (!entries[k].empty()) book.mnuX[k] = std::move(entries[k]);
    } catch (const basic::RuntimeError& error) {
        desktop.status("The list of recent projects was not read: " + error.told());
    }
}

void Sv(const Book& book, desktop::Desktop& desktop) {
    if (!basic::fileExists(book.FileName)) return;
    const std::string path = wholePath(book.FileName);
    const Entries entries = readList(desktop);
    if (std::find(entries.begin(), entries.end(), path) != entries.end()) return;
    basic::writeLines(listFile(desktop), {path, entries[0], entries[1], entries[2]},
                      files::Rights::OwnerOnly);
}

} // namespace project
