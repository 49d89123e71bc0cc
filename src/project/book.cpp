#include "book.h"

#include <cstring>

namespace project {

std::string Book::projectPath() const {
    const std::size_t prefix = std::strlen(captionPrefix);
    return Caption.size() > prefix ? Caption.substr(prefix) : std::string();
}

bool Book::hasFile() const {
    const std::string path = projectPath();
    return !path.empty() && path != "NoName.grl";
}

void Book::setProjectPath(std::string_view path) {
    Caption = captionPrefix + std::string(path);
}

} // namespace project
