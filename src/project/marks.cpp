#include "marks.h"

#include "basic/files.h"

#include <functional>
#include <optional>

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

std::uint64_t bookMark(const sheet::Book& book) {
    std::uint64_t mark = gridMark(book.MSFG);
    if (book.JobHeading.empty()) return mark;
    for (std::size_t key = 0; key < sheet::Heading::keys.size(); ++key)
        mark = mark * 31 + std::hash<std::string>{}(book.JobHeading.text(key));
    return mark;
}

std::string fileMark(std::string_view path) {
    try {
        const std::optional<files::Status> is = files::statusOf(basic::nativePath(path));
        if (!is) return {};
        return std::to_string(is->id.second) + ' ' + std::to_string(is->size) + ' ' +
               std::to_string(is->seconds) + '.' + std::to_string(is->nanoseconds);
    } catch (const files::Error&) {
        return {};
    }
}

} // namespace project
