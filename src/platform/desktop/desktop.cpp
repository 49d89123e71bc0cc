#include "desktop.h"

#include "basic/files.h"
#include "basic/strings.h"

#include <filesystem>
#include <system_error>

namespace desktop {

std::string programFile(Desktop& desktop, std::string_view name) {
    const std::string folder = desktop.programFolder() + "/";
    std::string asGiven = folder + std::string(name);
    if (basic::fileExists(asGiven)) return asGiven;
    std::error_code none;
    for (std::filesystem::directory_iterator entry(basic::nativePath(folder), none), end;
         !none && entry != end; entry.increment(none)) {
        const std::string found = entry->path().filename().string();
        if (basic::sameText(found, name)) return folder + found;
    }
    return asGiven;
}

} // namespace desktop
