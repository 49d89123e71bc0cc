#include "usage_map.h"

#include "data_page.h"
#include "pager.h"

#include <algorithm>
#include <bit>

namespace jet {

namespace {

constexpr std::uint32_t wordBits = 64;

} // namespace

void readUsageMap(Pager& pager, const View& row, const std::function<void(std::uint32_t)>& take,
                  std::vector<std::uint32_t>& mapPages) {
    readMapRow(
        pager.layout(), row, [&](std::uint32_t page) { return pager.view(page); }, take, mapPages);
}

UsageMap::UsageMap(Pager& pager, RowPointer where) : m_pager(pager), m_where(where) {
    const View page = pager.view(where.page);
    if (page.u8(0) != static_cast<std::uint8_t>(PageKind::Data)) page.fail(0, "a usage map is expected");
    requireOrder(page, pager.layout());
    const View row = rowAt(page, pager.layout(), where.row);
    m_pointers = row.u8(0) == static_cast<std::uint8_t>(MapKind::Pointers);
    if (!m_pointers) m_start = row.u32(mapStartAt);
    m_window = static_cast<std::uint32_t>(row.size() - std::min<std::size_t>(row.size(), mapBitsAt)) * 8;
    m_bits.resize(pager.pageCount() / wordBits + 1);
    const auto take = [&](std::uint32_t member) {
        if (member <= catalogPage || member >= pager.pageCount())
            row.fail(0, "a usage map names a page that cannot be meant");
        m_bits[member / wordBits] |= std::uint64_t{1} << member % wordBits;
    };
    readUsageMap(pager, row, take, m_mapPages);
}

bool UsageMap::contains(std::uint32_t page) const {
    return page / wordBits < m_bits.size() && (m_bits[page / wordBits] >> page % wordBits & 1) != 0;
}

std::uint32_t UsageMap::next(std::uint32_t from) const {
    for (std::size_t word = from / wordBits; word < m_bits.size(); ++word) {
        std::uint64_t bits = m_bits[word];
        if (word == from / wordBits) bits &= ~std::uint64_t{0} << from % wordBits;
        if (bits != 0) return static_cast<std::uint32_t>(word * wordBits + std::countr_zero(bits));
    }
    return 0;
}

std::uint32_t UsageMap::last() const {
    for (std::size_t word = m_bits.size(); word-- > 0;)
        if (m_bits[word] != 0)
            return static_cast<std::uint32_t>(word * wordBits + 63 - std::countl_zero(m_bits[word]));
    return 0;
}

std::vector<std::uint32_t> UsageMap::pages() const {
    std::vector<std::uint32_t> result;
    for (std::uint32_t page = next(0); page != 0; page = next(page + 1))
        result.push_back(page);
    return result;
}

Edit UsageMap::editRow(std::uint32_t& start, std::uint32_t& length) {
    Edit page = m_pager.edit(m_where.page);
    const Slot slot = slotAt(page, m_pager.layout(), m_where.row);
    start = slot.start;
    length = slot.length;
    return page;
}

void UsageMap::add(std::uint32_t page) {
    if (contains(page)) return;
    if (!m_pointers && (page < m_start || page - m_start >= m_window)) widen(page);
    if (page / wordBits >= m_bits.size()) m_bits.resize(page / wordBits + 1);
    m_bits[page / wordBits] |= std::uint64_t{1} << page % wordBits;
    setBit(page, true);
}

void UsageMap::remove(std::uint32_t page) {
    if (!contains(page)) return;
    m_bits[page / wordBits] &= ~(std::uint64_t{1} << page % wordBits);
    setBit(page, false);
}

void UsageMap::clear() {
    std::fill(m_bits.begin(), m_bits.end(), 0);
    for (std::uint32_t page : m_mapPages)
        if (page != 0) m_pager.release(page);
    m_mapPages.clear();
    m_pointers = false;
    moveWindow(0);
}

void UsageMap::setBit(std::uint32_t page, bool on) {
    const auto change = [on](Edit& bytes, std::size_t at, std::uint32_t bit) {
        const std::uint32_t mask = 1U << bit % 8;
        const std::uint32_t old = bytes.u8(at + bit / 8);
        bytes.set8(at + bit / 8, static_cast<std::uint8_t>(on ? old | mask : old & ~mask));
    };
    std::uint32_t start = 0;
    std::uint32_t length = 0;
    if (!m_pointers) {
        Edit row = editRow(start, length);
        change(row, start + mapBitsAt, page - m_start);
        return;
    }
    const std::uint32_t span = m_pager.layout().mapPageBits();
    const std::uint32_t number = page / span;
    if (number >= m_mapPages.size()) m_mapPages.resize(number + 1);
    if (m_mapPages[number] == 0) {
        const std::uint32_t fresh = m_pager.allocate();
        initMapPage(m_pager.edit(fresh));
        Edit row = editRow(start, length);
        if (mapPointersAt + 4 * number + 4 > length)
            throw Error(ErrorKind::Full, "The database would become larger than its format allows.");
        row.set32(start + mapPointersAt + 4 * number, fresh);
        m_mapPages[number] = fresh;
    }
    Edit map = m_pager.edit(m_mapPages[number]);
    change(map, mapPageHeader, page % span);
}

/// Makes room for a page outside the window.
void UsageMap::widen(std::uint32_t page) {
    const std::uint32_t lowest = next(0);
    const std::uint32_t first = (lowest == 0 ? page : std::min(lowest, page)) / 8 * 8;
    const std::uint32_t highest = std::max(last(), page);
    if (highest - first < m_window)
        moveWindow(first);
    else
        useMapPages();
}

void UsageMap::moveWindow(std::uint32_t first) {
    std::uint32_t start = 0;
    std::uint32_t length = 0;
    Edit row = editRow(start, length);
    row.fill(start, length, 0);
    row.set32(start + mapStartAt, first);
    m_start = first;
    for (std::uint32_t page : pages())
        setBit(page, true);
}

void UsageMap::useMapPages() {
    std::uint32_t start = 0;
    std::uint32_t length = 0;
    Edit row = editRow(start, length);
    row.fill(start, length, 0);
    row.set8(start, static_cast<std::uint8_t>(MapKind::Pointers));
    m_pointers = true;
    for (std::uint32_t page : pages())
        setBit(page, true);
}

} // namespace jet
