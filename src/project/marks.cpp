#include "marks.h"

#include "basic/files.h"

#include <functional>
#include <sys/stat.h>

namespace project {

std::uint64_t gridMark(const sheet::Grid& grid) {
    constexpr std::uint64_t prime = 0x100000001b3; // as in FNV-1a
    std::uint64_t mark = 0xcbf29ce484222325;
    bool anyText = false;
    for (int row = 1; row < grid.Rows(); ++row) {
        for (int col = 0; col < grid.Cols(); ++col) {
            const std::string& text = grid.Text(row, col);
            anyText = anyText || !text.empty();
            mark = (mark ^ (text.empty() ? 1 : std::hash<std::string>{}(text))) * prime;
        }
    }
    return anyText ? mark : 0;
}

std::string fileMark(std::string_view path) {
    struct stat is {};
    if (stat(basic::nativePath(path).c_str(), &is) != 0) return {};
    return std::to_string(is.st_ino) + ' ' + std::to_string(is.st_size) + ' ' +
           std::to_string(is.st_mtim.tv_sec) + '.' + std::to_string(is.st_mtim.tv_nsec);
}

} // namespace project
