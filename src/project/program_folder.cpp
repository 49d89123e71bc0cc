#include "program_folder.h"

#include "basic/files.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"

#include "files/folder.h"
#include "files/status.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <vector>

namespace project {

namespace {

constexpr unsigned ownerFolder = 0700;

std::vector<std::string> filesOf(const std::string& folder) {
    std::vector<std::string> names = files::namesIn(folder);
    std::erase_if(names, [&](const std::string& name) { return basic::folderExists(folder + '/' + name); });
    std::sort(names.begin(), names.end());
    return names;
}

void makeFolders(const std::string& folder) {
    if (basic::folderExists(folder)) return;
    const std::string parent = files::folderOf(folder);
    if (parent != folder && parent != ".") makeFolders(parent);
    try {
        files::makeFolder(folder, ownerFolder);
    } catch (const files::Error& error) {
        if (error.code() != EEXIST) throw; // another instance made it
    }
}

void layIn(const std::string& folder, const std::string& shipped) {
    if (!basic::folderExists(shipped)) return;
    const std::vector<std::string> present = filesOf(folder);
    for (const std::string& name : filesOf(shipped)) {
        const bool there = std::any_of(present.begin(), present.end(), [&name](const std::string& other) {
            return basic::sameText(name, other);
        });
        if (there) continue;
        const std::string target = folder + '/' + name;
        basic::fileCopy(shipped + '/' + name, target); // renamed into place whole
        files::makePrivate(target);
    }
}

} // namespace

std::string programFolder() {
    const char* data = std::getenv("XDG_DATA_HOME");
    if (data != nullptr && *data == '/') return std::string(data) + "/zavrogrl";
    return files::homeFolder() + "/.local/share/zavrogrl";
}

std::string shippedFolder() {
    const std::string binary = files::ownBinary();
    if (binary.empty()) return {};
    return files::folderOf(files::folderOf(binary)) + "/share/zavrogrl/templates";
}

std::string prepareProgramFolder(std::string_view folder, std::string_view shipped) {
    try {
        basic::during(basic::FileAction::MakeFolder, [&] {
            makeFolders(std::string(folder));
            layIn(std::string(folder), std::string(shipped));
        });
    } catch (const basic::RuntimeError& error) {
        return error.told();
    }
    return {};
}

} // namespace project
