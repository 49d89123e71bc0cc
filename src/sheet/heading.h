#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace sheet {

/// What stands at the head of a field book: who levelled what, when and with which instrument.
class Heading {
  public:
    static constexpr std::array<const char*, 12> keys{"work",   "road",     "from",    "to",
                                                      "date",   "surveyor", "booker",  "instrument",
                                                      "number", "staff",    "weather", "mark"};
    static constexpr std::size_t longest = 255; ///< characters of a text

    /// The place of a key in `keys`, in any letter case.
    [[nodiscard]] static std::optional<std::size_t> find(std::string_view key);

    [[nodiscard]] const std::string& text(std::size_t key) const { return m_texts.at(key); }
    [[nodiscard]] const std::string& text(std::string_view key) const {
        return m_texts.at(find(key).value());
    }
    /// Cut to what a file holds.
    void setText(std::size_t key, std::string_view text);
    [[nodiscard]] bool empty() const;
    friend bool operator==(const Heading&, const Heading&) = default;

  private:
    std::array<std::string, keys.size()> m_texts;
};

} // namespace sheet
