#include "marks.h"

#include "basic/files.h"

#include <cstring>
#include <functional>
#include <optional>

namespace project {

namespace {

/// A number for a text, spread over all its bits. Cells are short: up to 16 bytes are two overlapping words.
std::uint64_t hashOf(const std::string& text) {
    const char* const bytes = text.data();
    const std::size_t size = text.size();
    const auto word = [bytes](std::size_t at, std::size_t length) {
        std::uint64_t value = 0;
        std::memcpy(&value, bytes + at, length);
        return value;
    };
    std::uint64_t low = 0;
    std::uint64_t high = 0;
    if (size > 16) return std::hash<std::string>{}(text);
    if (size >= 8) {
        low = word(0, 8);
        high = word(size - 8, 8);
    } else if (size >= 4) {
        low = word(0, 4) | word(size - 4, 4) << 32;
    } else {
        low = word(0, size);
    }
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15; // 2^64 by the golden ratio
    low = (low ^ size) * odd;
    high = (high ^ low >> 32) * odd;
    return low ^ high ^ high >> 29;
}

} // namespace

std::uint64_t gridMark(const sheet::Grid& grid) {
    constexpr std::uint64_t prime = 0x100000001b3; // as in FNV-1a
    std::uint64_t mark = 0xcbf29ce484222325;
    bool anyText = false;
    for (int row = 1; row < grid.Rows(); ++row) {
        for (const std::string& text : grid.Texts(row)) {
            anyText = anyText || !text.empty();
            mark = (mark ^ (text.empty() ? 1 : hashOf(text))) * prime;
        }
    }
    return anyText ? mark : 0;
}

std::uint64_t bookMark(const Book& book) {
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
