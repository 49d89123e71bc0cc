#include "data_page.h"
#include "map_row.h"
#include "pager.h"

#include <algorithm>

// The map of free pages, the first row of page 1: inline as long as page 1 has room for one bit a page, else
// as pointers to map pages.

namespace jet {

FreePages& Pager::freePages() {
    if (!m_freePages) {
        FreePages free(pageCount());
        readMapRow(
            *m_layout, rowAt(view(freePagesPage), *m_layout, 0),
            [this](std::uint32_t page) { return view(page); }, [&](std::uint32_t page) { free.put(page); },
            m_freeMapPages);
        m_freePages = std::move(free);
    }
    return *m_freePages;
}

void Pager::flush() {
    if (!m_freePages || !m_freePages->changed()) return;
    // As files of Access have it: one bit a page and some to spare, never less than a usual row.
    const std::uint32_t rowBytes = std::max(m_layout->mapRow, mapBitsAt + 4 * ((pageCount() + 31) / 32));
    const View page = view(freePagesPage);
    const Slot row = slotAt(page, *m_layout, 0);
    if (m_freeMapPages.empty() && rowBytes <= row.length + freeSpace(page, *m_layout))
        saveFreeInline(std::max(rowBytes, row.length));
    else
        saveFreePages();
    m_freePages->saved();
}

/// The row of the map, in that length; its bytes are to be written.
std::uint32_t Pager::sizedFreeRow(RowEdit page, std::uint32_t rowBytes) {
    const Slot slot = slotAt(page, *m_layout, 0);
    const std::uint32_t start =
        slot.length == rowBytes ? slot.start : resizeRow(page, *m_layout, 0, rowBytes, 0);
    page.fill(start, rowBytes, 0);
    return start;
}

void Pager::saveFreeInline(std::uint32_t rowBytes) {
    RowEdit page = editRows(freePagesPage);
    const std::uint32_t start = sizedFreeRow(page, rowBytes);
    for (std::uint32_t i = 0; i < rowBytes - mapBitsAt; ++i)
        page.set8(start + mapBitsAt + i, m_freePages->byteAt(i * 8));
}

void Pager::saveFreePages() {
    // A map page can itself lie behind the pages that are mapped so far.
    while (std::uint64_t{m_freeMapPages.size()} * m_layout->mapPageBits() < pageCount())
        m_freeMapPages.push_back(allocate());
    if (m_freeMapPages.size() > m_layout->mapPointers())
        throw Error(ErrorKind::Full, "The database would become larger than its format allows.");
    RowEdit page = editRows(freePagesPage);
    const std::uint32_t start = sizedFreeRow(page, m_layout->mapRow);
    page.set8(start, static_cast<std::uint8_t>(MapKind::Pointers));
    for (std::size_t i = 0; i < m_freeMapPages.size(); ++i) {
        page.set32(start + mapPointersAt + 4 * i, m_freeMapPages[i]);
        Edit map = edit(m_freeMapPages[i]);
        initMapPage(map);
        const auto first = static_cast<std::uint32_t>(i) * m_layout->mapPageBits();
        for (std::uint32_t byte = 0; byte < m_layout->mapPageBits() / 8; ++byte)
            map.set8(mapPageHeader + byte, m_freePages->byteAt(first + byte * 8));
    }
}

} // namespace jet
