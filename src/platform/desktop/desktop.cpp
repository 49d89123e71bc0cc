#include "desktop.h"

#include "basic/files.h"
#include "basic/strings.h"

#include "files/folder.h"

namespace desktop {

std::string programFile(Desktop& desktop, std::string_view name) {
    const std::string folder = desktop.programFolder() + "/";
    std::string asGiven = folder + std::string(name);
    if (basic::fileExists(asGiven)) return asGiven;
    try {
        for (const std::string& found : files::namesIn(basic::nativePath(folder)))
            if (basic::sameText(found, name)) return folder + found;
    } catch (const files::Error&) {
        return asGiven; // whoever opens it is told what is wrong
    }
    return asGiven;
}

} // namespace desktop
