#include "check_ledger.h"

#include "data_page.h"
#include "usage_map.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::size_t mostFaults = 1000;

} // namespace

void Faults::add(const std::string& what) {
    if (m_lines.size() < mostFaults)
        m_lines.push_back(what);
    else if (m_lines.size() == mostFaults)
        m_lines.emplace_back("more faults are not listed");
}

PageLedger::PageLedger(Pager& pager, Faults& faults)
    : m_pager(pager), m_faults(faults), m_free(pager.pageCount()), m_userOf(pager.pageCount()) {
    claim(0, "the header");
    claim(freePagesPage, "the map of free pages");
    m_faults.guarded("map of free pages", [&] { readGlobalMaps(); });
}

/// Page 1: the map of free pages, and one whose purpose is not known but whose map pages are in use.
void PageLedger::readGlobalMaps() {
    const Layout& layout = m_pager.layout();
    const View page = m_pager.view(freePagesPage);
    if (!checkSlots(page, layout, 1, m_faults)) return;
    if (slotCount(page, layout) != 2) m_faults.add(freePagesPage, "two maps are expected");
    readFreePages(rowAt(page, layout, 0));
    std::vector<std::uint32_t> mapPages;
    readUsageMap(
        m_pager, rowAt(page, layout, 1), [](std::uint32_t) {}, mapPages);
    for (std::uint32_t mapPage : mapPages)
        if (mapPage != 0) claim(mapPage, "the second global map");
}

void PageLedger::readFreePages(const View& row) {
    std::vector<std::uint32_t> mapPages;
    const auto take = [&](std::uint32_t member) {
        if (member < m_free.size()) m_free[member] = true;
    };
    readUsageMap(m_pager, row, take, mapPages);
    for (std::uint32_t mapPage : mapPages)
        if (mapPage != 0) claim(mapPage, "the map of free pages");
    if (row.u8(0) != 0 || !m_faults.strict()) return;
    if (row.u32(1) != 0) m_faults.add(freePagesPage, "the map of free pages does not start at page 0");
    if ((row.size() - 5) * 8 < m_pager.pageCount())
        m_faults.add(freePagesPage, "the map of free pages is shorter than the file");
}

bool PageLedger::claim(std::uint32_t page, const std::string& user) {
    if (page >= m_userOf.size()) {
        m_faults.add(page, "not in the file, but part of " + user);
        return false;
    }
    if (m_userOf[page] != 0) {
        m_faults.add(page, "part of " + m_users[m_userOf[page] - 1] + " and of " + user);
        return false;
    }
    if (m_users.empty() || m_users.back() != user) m_users.push_back(user);
    m_userOf[page] = static_cast<std::uint32_t>(m_users.size());
    if (m_free[page]) m_faults.add(page, "marked as free, but part of " + user);
    return true;
}

std::vector<std::uint32_t> PageLedger::readMap(RowPointer where, const std::string& user) {
    std::vector<std::uint32_t> pages;
    m_faults.guarded(user, [&] {
        const View page = m_pager.view(where.page);
        if (m_mapRowPages.insert(where.page).second) {
            claim(where.page, "usage maps");
            checkSlots(page, m_pager.layout(), usageMapOwner, m_faults);
        }
        if (!m_mapRows.insert(where.pack()).second) m_faults.add(where, "a second map, of " + user);
        const View row = rowAt(page, m_pager.layout(), where.row);
        std::vector<std::uint32_t> mapPages;
        readUsageMap(
            m_pager, row, [&](std::uint32_t member) { pages.push_back(member); }, mapPages);
        for (std::uint32_t mapPage : mapPages)
            if (mapPage != 0) claim(mapPage, "a map of " + user);
    });
    std::erase_if(pages, [&](std::uint32_t member) {
        if (member < m_pager.pageCount()) return false;
        m_faults.add(member, "not in the file, but in the map of " + user);
        return true;
    });
    return pages;
}

void PageLedger::finish() {
    for (std::uint32_t page : m_mapRowPages) {
        m_faults.guarded("usage maps", [&] {
            const View view = m_pager.view(page);
            for (int i = 0; i < slotCount(view, m_pager.layout()); ++i) {
                const RowPointer row{page, static_cast<std::uint8_t>(i)};
                if (m_faults.strict() && !slotAt(view, m_pager.layout(), i).deleted() &&
                    !m_mapRows.contains(row.pack()))
                    m_faults.add(row, "a usage map that nothing refers to");
            }
        });
    }
    for (std::uint32_t page = 0; page < m_userOf.size(); ++page) {
        if (m_userOf[page] != 0 || m_free[page] || !m_faults.strict()) continue;
        const bool definition = m_pager.view(page).u8(0) == static_cast<std::uint8_t>(PageKind::TableDef);
        m_faults.add(page, definition ? "a definition that no table has" : "neither used nor marked as free");
    }
}

bool checkSlots(const View& page, const Layout& layout, std::uint32_t owner, Faults& faults) {
    if (page.u8(0) != static_cast<std::uint8_t>(PageKind::Data) || page.u8(1) != 1) {
        faults.add(page.page(), "no page with rows");
        return false;
    }
    if (page.u32(ownerAt) != owner)
        faults.add(page.page(), "belongs to " + std::to_string(page.u32(ownerAt)));
    const std::uint32_t count = page.u16(layout.slotCountAt);
    const std::uint32_t head = layout.slotsAt + 2 * count;
    if (count > mostSlots || head > layout.pageSize) {
        faults.add(page.page(), "too many rows");
        return false;
    }
    std::uint32_t lowest = layout.pageSize;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t slot = page.u16(layout.slotsAt + 2 * i);
        const std::uint32_t start = slot & 0x1FFF;
        if ((slot & 0x2000) != 0)
            faults.add(page.page(), "row " + std::to_string(i) + " has an unknown flag");
        if (start > lowest || start < head) {
            faults.add(page.page(), "row " + std::to_string(i) + " lies outside its place");
            return false;
        }
        lowest = start;
    }
    if (page.u16(freeSpaceAt) != lowest - head) faults.add(page.page(), "wrong count of free bytes");
    return true;
}

} // namespace jet
