#include "default_folder.h"

#include "basic/files.h"
#include "basic/strings.h"

#include <vector>

namespace project {

namespace {

constexpr const char* usualFolder = "C:\\Road";
constexpr const char* prefix = "002 "; // tag and blank; readers drop four characters whatever they are

std::string settingFile(desktop::Desktop& desktop) {
    return desktop::programFile(desktop, "set.ini");
}

std::string readFolder(const std::string& file) {
    const std::vector<std::string> lines = basic::readLines(file);
    if (lines.empty()) throw basic::RuntimeError(basic::InputPastEnd);
    return lines.front().substr(basic::left(lines.front(), 4).size());
}

} // namespace

void readDefaultFolder(Book& book, desktop::Desktop& desktop) {
    book.DefaultFolder = usualFolder;
    const std::string file = settingFile(desktop);
    if (!basic::fileExists(file)) return;
    try {
        book.DefaultFolder = readFolder(file);
    } catch (const basic::RuntimeError& error) {
        desktop.status("The default folder was not read: " + error.told());
    }
}

std::string loadFolderForDialog(desktop::Desktop& desktop) {
    const std::string file = settingFile(desktop);
    if (basic::fileExists(file)) return readFolder(file);
    basic::writeLines(file, {std::string(prefix) + usualFolder});
    return usualFolder;
}

std::string nearestFolder(std::string_view folder) {
    std::string place = basic::nativePath(basic::trim(folder));
    while (!place.empty() && !basic::folderExists(place)) {
        const std::size_t slash = place.rfind('/');
        place.erase(slash == std::string::npos ? 0 : slash);
    }
    return place.empty() ? "/" : place;
}

void chooseDefaultFolder(Book& book, desktop::Desktop& desktop, std::string_view folder) {
    book.DefaultFolder = std::string(basic::trim(folder));
    try {
        basic::writeLines(settingFile(desktop), {prefix + book.DefaultFolder});
    } catch (const basic::RuntimeError& error) {
        desktop.status("The default folder holds for this run only: " + error.told());
    }
}

} // namespace project
