#include "heading.h"

#include "basic/strings.h"

#include <algorithm>

namespace sheet {

std::optional<std::size_t> Heading::find(std::string_view key) {
    const auto found =
        std::ranges::find_if(keys, [&](const char* each) { return basic::sameText(each, key); });
    if (found == keys.end()) return std::nullopt;
    return static_cast<std::size_t>(found - keys.begin());
}

void Heading::setText(std::size_t key, std::string_view text) {
    m_texts.at(key) = basic::left(basic::trim(text), longest);
}

bool Heading::empty() const {
    return std::ranges::all_of(m_texts, [](const std::string& text) { return text.empty(); });
}

} // namespace sheet
