#include "data_page.h"

namespace jet {

namespace {

std::uint32_t lowestRow(const View& page, const Layout& layout, int count) {
    if (count == 0) return layout.pageSize;
    return page.u16(slotPlace(layout, count - 1)) & slotOffset;
}

void saveFreeSpace(Edit& page, const Layout& layout) {
    page.set16(freeSpaceAt, freeSpace(page, layout));
}

} // namespace

Slot slotAt(const View& page, const Layout& layout, int number) {
    const int count = slotCount(page, layout);
    if (number < 0 || number >= count) page.fail(layout.slotCountAt, "no such row on the page");
    return slotAt(page, layout, number, count);
}

View rowAt(const View& page, const Layout& layout, int number) {
    const Slot slot = slotAt(page, layout, number);
    if (slot.deleted()) page.fail(slotPlace(layout, number), "a deleted row is referred to");
    return page.part(slot.start, slot.length);
}

std::uint32_t freeSpace(const View& page, const Layout& layout) {
    const int count = slotCount(page, layout);
    const std::uint32_t lowest = lowestRow(page, layout, count);
    const auto head = static_cast<std::uint32_t>(slotPlace(layout, count));
    if (lowest < head || lowest > layout.pageSize) page.fail(layout.slotsAt, "rows overlap the slots");
    return lowest - head;
}

std::uint32_t pageOwner(const View& page) {
    return page.u32(ownerAt);
}

void requireDataPage(const View& page, std::uint32_t owner) {
    if (page.u8(0) != static_cast<std::uint8_t>(PageKind::Data)) page.fail(0, "a page with rows is expected");
    if (pageOwner(page) != owner) page.fail(ownerAt, "a page belongs to another table");
}

void requireOrder(const View& page, const Layout& layout) {
    std::uint32_t end = layout.pageSize;
    const int count = slotCount(page, layout);
    for (int i = 0; i < count; ++i) {
        const std::uint32_t start = page.u16(slotPlace(layout, i)) & slotOffset;
        if (start > end) page.fail(slotPlace(layout, i), "rows are out of order");
        end = start;
    }
}

void initDataPage(Edit page, const Layout& layout, std::uint32_t owner) {
    page.fill(0, layout.pageSize, 0);
    page.set8(0, static_cast<std::uint8_t>(PageKind::Data));
    page.set8(1, 1);
    page.set32(ownerAt, owner);
    saveFreeSpace(page, layout);
}

bool hasRoom(const View& page, const Layout& layout, std::size_t length) {
    return slotCount(page, layout) < mostSlots && freeSpace(page, layout) >= length + 2;
}

std::uint8_t appendRow(RowEdit page, const Layout& layout, ByteView row, std::uint16_t flags) {
    const int count = slotCount(page, layout);
    const std::size_t lowest = lowestRow(page, layout, count);
    const std::size_t head = slotPlace(layout, count + 1);
    if (count >= mostSlots || lowest > layout.pageSize || lowest < head + row.size())
        page.fail(freeSpaceAt, "no room for a row");
    const std::size_t start = lowest - row.size();
    page.setBytes(start, row);
    page.set16(slotPlace(layout, count), start | flags);
    page.set16(layout.slotCountAt, static_cast<std::size_t>(count) + 1);
    page.set16(freeSpaceAt, start - head);
    return static_cast<std::uint8_t>(count);
}

std::uint32_t resizeRow(RowEdit page, const Layout& layout, int number, std::size_t length,
                        std::uint16_t flags) {
    const int count = slotCount(page, layout);
    const Slot slot = slotAt(page, layout, number);
    const std::uint32_t lowest = lowestRow(page, layout, count);
    if (length > slot.length + freeSpace(page, layout))
        page.fail(slotPlace(layout, number), "no room for a row");
    const auto shift = static_cast<std::ptrdiff_t>(slot.length) - static_cast<std::ptrdiff_t>(length);
    const auto shifted = [shift](std::size_t at) {
        return static_cast<std::size_t>(static_cast<std::ptrdiff_t>(at) + shift);
    };
    page.move(lowest, shifted(lowest), slot.start - lowest);
    if (shift > 0) page.fill(lowest, static_cast<std::size_t>(shift), 0);
    for (int i = number; i < count; ++i) {
        const std::uint16_t packed = page.u16(slotPlace(layout, i));
        const std::uint16_t kept = i == number ? flags : packed & slotFlags;
        page.set16(slotPlace(layout, i), (shifted(packed & slotOffset) & slotOffset) | kept);
    }
    saveFreeSpace(page, layout);
    return static_cast<std::uint32_t>(shifted(slot.start));
}

void eraseRow(RowEdit page, const Layout& layout, int number) {
    resizeRow(page, layout, number, 0, deletedRow);
}

std::uint32_t homesOn(const View& page, const Layout& layout) {
    std::uint32_t homes = 0;
    const int count = slotCount(page, layout);
    for (int i = 0; i < count; ++i) {
        const Slot slot = slotAt(page, layout, i, count);
        homes += !slot.deleted() && !slot.isOverflow();
    }
    return homes;
}

bool isEmptyPage(const View& page, const Layout& layout) {
    const int count = slotCount(page, layout);
    // Rows mostly go in the order in which they came, so that one of the last is still there.
    for (int i = count; i-- > 0;)
        if ((page.u16(slotPlace(layout, i)) & slotFlags) != deletedRow) return false;
    return true;
}

} // namespace jet
