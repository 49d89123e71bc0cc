#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <span>

namespace fuzz {

/// Damages a file of pages where its structure stands: the heads of pages, their slots, definitions. Bytes
/// keep their places, which mutations of arbitrary bytes do not care for.
inline void damagePages(std::span<std::uint8_t> content, std::size_t pageSize, unsigned seed) {
    if (content.size() < 4 * pageSize) return;
    std::minstd_rand random(seed);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    static constexpr std::array<std::uint8_t, 7> odd{0x00, 0xFF, 0x7F, 0x80, 0x01, 0x40, 0xC0};
    const std::size_t pages = content.size() / pageSize;
    const std::size_t places = 1 + below(4);
    std::size_t page = 0;
    for (std::size_t i = 0; i < places; ++i) {
        // Faults that belong together lie on one page.
        if (i == 0 || below(2) == 0)
            page = below(3) == 0 ? below(std::min<std::size_t>(pages, 16)) : below(pages);
        static constexpr std::array<std::size_t, 4> reaches{24, 80, 700, 0};
        const std::size_t reach = reaches[below(reaches.size())];
        // Rows stand at the end of a page, everything else at its start.
        const std::size_t within = reach == 0 ? pageSize - 1 - below(pageSize / 4) : below(reach);
        std::uint8_t& byte = content[page * pageSize + within];
        switch (below(5)) {
        case 0:
            byte = odd[below(odd.size())];
            break;
        case 1:
            byte = static_cast<std::uint8_t>(byte + 1);
            break;
        case 2:
            byte = static_cast<std::uint8_t>(byte ^ 1U << below(8));
            break;
        case 3:
            byte = static_cast<std::uint8_t>(below(pages)); // mostly a page number
            break;
        default:
            byte = static_cast<std::uint8_t>(below(256));
            break;
        }
    }
    if (below(30) == 0) {
        const std::size_t from = below(pages) * pageSize;
        const std::size_t to = below(pages) * pageSize;
        std::copy_n(content.begin() + static_cast<std::ptrdiff_t>(from), pageSize,
                    content.begin() + static_cast<std::ptrdiff_t>(to));
    }
}

} // namespace fuzz
