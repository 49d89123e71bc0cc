#include "free_pages.h"

#include <algorithm>
#include <bit>

namespace jet {

namespace {

constexpr std::uint32_t wordBits = 64;

} // namespace

void FreePages::put(std::uint32_t page) {
    if (page < m_pageCount) m_free[page / wordBits] |= std::uint64_t{1} << page % wordBits;
}

bool FreePages::contains(std::uint32_t page) const {
    const std::size_t word = page / wordBits;
    if (word >= m_free.size()) return true;
    const std::uint64_t bits = m_free[word] | (word < m_doubtful.size() ? m_doubtful[word] : 0);
    return (bits >> page % wordBits & 1) != 0;
}

std::uint32_t FreePages::take(std::uint32_t lowest) {
    const std::uint32_t first = std::max(lowest, m_hint);
    for (std::size_t word = first / wordBits; word < m_free.size(); ++word) {
        std::uint64_t bits = m_free[word];
        if (word == first / wordBits) bits &= ~std::uint64_t{0} << first % wordBits;
        if (bits == 0) continue;
        const auto page = static_cast<std::uint32_t>(word * wordBits + std::countr_zero(bits));
        m_free[word] &= ~(std::uint64_t{1} << page % wordBits);
        if (lowest <= m_hint) m_hint = page + 1;
        m_changed = true;
        return page;
    }
    if (lowest <= m_hint) m_hint = std::max(m_hint, m_pageCount);
    return 0;
}

void FreePages::use(std::uint32_t page) {
    m_pageCount = std::max(m_pageCount, page + 1);
    if (page / wordBits >= m_free.size()) m_free.resize(page / wordBits + 1);
    m_free[page / wordBits] &= ~(std::uint64_t{1} << page % wordBits);
    m_changed = true;
}

void FreePages::release(std::uint32_t page) {
    if (page / wordBits >= m_free.size()) m_free.resize(page / wordBits + 1);
    m_free[page / wordBits] |= std::uint64_t{1} << page % wordBits;
    m_hint = std::min(m_hint, page);
    m_changed = true;
}

void FreePages::doubt(std::uint32_t page) {
    m_doubtful.resize(std::max<std::size_t>(m_doubtful.size(), page / wordBits + 1));
    m_doubtful[page / wordBits] |= std::uint64_t{1} << page % wordBits;
}

std::uint8_t FreePages::byteAt(std::uint32_t first) const {
    std::uint32_t bits = 0;
    for (std::uint32_t bit = 0; bit < 8; ++bit)
        if (first + bit >= m_pageCount || contains(first + bit)) bits |= 1U << bit;
    return static_cast<std::uint8_t>(bits);
}

} // namespace jet
