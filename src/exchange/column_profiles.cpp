#include "column_profiles.h"

#include "basic/files.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"

#include <algorithm>

namespace exchange {
namespace {

constexpr std::size_t mostProfiles = 200;

std::string keyOf(const Layout& layout) {
    std::string key;
    for (const std::string& heading : layout.headings) {
        std::string field = heading;
        std::ranges::replace_if(
            field, [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
        key += '\t' + field;
    }
    return key;
}

std::vector<std::string> profiles(const std::string& file) {
    try {
        return basic::fileExists(file) ? basic::readLines(file) : std::vector<std::string>();
    } catch (const basic::RuntimeError&) {
        return {};
    }
}

bool isOf(const std::string& profile, const std::string& key) {
    const std::size_t tab = profile.find('\t');
    return tab != std::string::npos && std::string_view(profile).substr(tab) == key;
}

} // namespace

bool recallColumns(const std::string& file, Layout& layout) {
    const std::string key = keyOf(layout);
    if (key.find_first_not_of('\t') == std::string::npos) return false; // no headings to go by
    for (const std::string& profile : profiles(file)) {
        if (!isOf(profile, key)) continue;
        std::string_view words = std::string_view(profile).substr(0, profile.find('\t'));
        for (ColumnKind& kind : layout.columns) {
            const std::size_t comma = std::min(words.find(','), words.size());
            kind = columnKindOf(words.substr(0, comma)).value_or(ColumnKind::Nothing);
            words.remove_prefix(std::min(comma + 1, words.size()));
        }
        return true;
    }
    return false;
}

void rememberColumns(const std::string& file, const Layout& layout) {
    const std::string key = keyOf(layout);
    std::string words;
    for (const ColumnKind kind : layout.columns)
        words += (words.empty() ? "" : ",") + std::string(wordOf(kind));
    std::vector<std::string> lines{words + key};
    for (std::string& profile : profiles(file))
        if (!isOf(profile, key) && lines.size() < mostProfiles) lines.push_back(std::move(profile));
    basic::writeLines(file, lines);
}

} // namespace exchange
