#include "free_pages.h"

#include "data_page.h"
#include "pager.h"
#include "usage_map.h"

#include <algorithm>
#include <bit>

namespace jet {

namespace {

constexpr std::uint32_t wordBits = 64;

} // namespace

FreePages::FreePages(Pager& pager) : m_pager(pager) {
    m_free.resize((pager.pageCount() + wordBits - 1) / wordBits);
    const View row = rowAt(pager.view(freePagesPage), pager.layout(), 0);
    const auto keep = [this](std::uint32_t page) {
        if (page < m_pager.pageCount()) m_free[page / wordBits] |= std::uint64_t{1} << page % wordBits;
    };
    readUsageMap(pager, row, keep, m_mapPages);
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
    if (lowest <= m_hint) m_hint = std::max(m_hint, m_pager.pageCount());
    return 0;
}

void FreePages::use(std::uint32_t page) {
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

void FreePages::save() {
    if (!m_changed) return;
    const Layout& layout = m_pager.layout();
    // As files of Access have it: one bit a page and some to spare, never less than a usual row.
    const std::uint32_t rowBytes = std::max(layout.mapRow, 5 + 4 * ((m_pager.pageCount() + 31) / 32));
    const View page = m_pager.view(freePagesPage);
    const Slot row = slotAt(page, layout, 0);
    if (m_mapPages.empty() && rowBytes <= row.length + freeSpace(page, layout))
        saveInline(std::max(rowBytes, row.length));
    else
        savePages();
    m_changed = false;
}

void FreePages::saveInline(std::uint32_t rowBytes) {
    Edit page = m_pager.edit(freePagesPage);
    const Slot slot = slotAt(page, m_pager.layout(), 0);
    const std::uint32_t start =
        slot.length == rowBytes ? slot.start : resizeRow(page, m_pager.layout(), 0, rowBytes, 0);
    page.fill(start, 5, 0);
    for (std::uint32_t i = 0; i < rowBytes - 5; ++i) {
        // Pages behind the end of the file count as free: taking them extends the file.
        std::uint32_t bits = 0;
        for (std::uint32_t bit = 0; bit < 8; ++bit) {
            const std::uint32_t number = i * 8 + bit;
            if (number >= m_pager.pageCount() || contains(number)) bits |= 1U << bit;
        }
        page.set8(start + 5 + i, static_cast<std::uint8_t>(bits));
    }
}

void FreePages::savePages() {
    const Layout& layout = m_pager.layout();
    // A map page can itself lie behind the pages that are mapped so far.
    while (std::uint64_t{m_mapPages.size()} * layout.mapPageBits() < m_pager.pageCount())
        m_mapPages.push_back(m_pager.allocate());
    if (m_mapPages.size() > layout.mapPointers())
        throw Error(ErrorKind::Full, "The database would become larger than its format allows.");
    Edit page = m_pager.edit(freePagesPage);
    const Slot slot = slotAt(page, layout, 0);
    const std::uint32_t start =
        slot.length == layout.mapRow ? slot.start : resizeRow(page, layout, 0, layout.mapRow, 0);
    page.fill(start, layout.mapRow, 0);
    page.set8(start, 1);
    for (std::size_t i = 0; i < m_mapPages.size(); ++i) {
        page.set32(start + 1 + 4 * i, m_mapPages[i]);
        Edit map = m_pager.edit(m_mapPages[i]);
        initMapPage(map);
        for (std::uint32_t byte = 0; byte < layout.mapPageBits() / 8; ++byte) {
            std::uint32_t bits = 0;
            for (std::uint32_t bit = 0; bit < 8; ++bit) {
                const auto number = static_cast<std::uint32_t>(i) * layout.mapPageBits() + byte * 8 + bit;
                if (number >= m_pager.pageCount() || contains(number)) bits |= 1U << bit;
            }
            map.set8(mapPageHeader + byte, static_cast<std::uint8_t>(bits));
        }
    }
}

} // namespace jet
