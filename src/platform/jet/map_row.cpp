#include "map_row.h"

#include <bit>

namespace jet {

namespace {

void eachBit(ByteView bytes, std::uint32_t first, const std::function<void(std::uint32_t)>& take) {
    for (std::size_t i = 0; i < bytes.size(); ++i)
        for (unsigned bits = bytes[i]; bits != 0; bits &= bits - 1)
            take(static_cast<std::uint32_t>(first + i * 8 + static_cast<unsigned>(std::countr_zero(bits))));
}

void requireMapPage(const View& page) {
    if (page.u8(0) != static_cast<std::uint8_t>(PageKind::UsageMap))
        page.fail(0, "a usage map page is expected");
}

} // namespace

void readMapRow(const Layout& layout, const View& row, const PageSource& page,
                const std::function<void(std::uint32_t)>& take, std::vector<std::uint32_t>& mapPages) {
    if (row.u8(0) == static_cast<std::uint8_t>(MapKind::Window)) {
        if (row.size() < mapBitsAt) row.fail(0, "a usage map is too short");
        eachBit(row.bytes(mapBitsAt, row.size() - mapBitsAt), row.u32(mapStartAt), take);
        return;
    }
    if (row.u8(0) != static_cast<std::uint8_t>(MapKind::Pointers))
        row.fail(0, "a usage map is of an unknown kind");
    const std::uint32_t span = layout.mapPageBits();
    for (std::uint32_t i = 0; mapPointersAt + 4 * i + 4 <= row.size(); ++i) {
        const std::uint32_t number = row.u32(mapPointersAt + 4 * i);
        mapPages.push_back(number);
        if (number == 0) continue;
        const View map = page(number);
        requireMapPage(map);
        eachBit(map.bytes(mapPageHeader, span / 8), i * span, take);
    }
    while (!mapPages.empty() && mapPages.back() == 0)
        mapPages.pop_back();
}

void initMapPage(Edit page) {
    page.fill(0, page.size(), 0);
    page.set8(0, static_cast<std::uint8_t>(PageKind::UsageMap));
    page.set8(1, 1);
}

std::vector<std::uint8_t> emptyMapRow(const Layout& layout) {
    return std::vector<std::uint8_t>(layout.mapRow, 0);
}

} // namespace jet
