#pragma once

#include "bytes.h"
#include "layout.h"

namespace jet {

constexpr std::uint16_t overflowRow = 0x8000; ///< body of a row whose home is another slot
constexpr std::uint16_t pointerRow = 0x4000;  ///< its first four bytes point to the body
constexpr std::uint16_t deletedRow = 0xC000;
constexpr std::uint16_t slotFlags = 0xC000;
constexpr std::uint16_t slotOffset = 0x1FFF;

struct Slot {
    std::uint32_t start;
    std::uint32_t length;
    std::uint16_t flags;

    [[nodiscard]] bool deleted() const { return (flags & slotFlags) == deletedRow; }
    [[nodiscard]] bool isPointer() const { return (flags & slotFlags) == pointerRow; }
    [[nodiscard]] bool isOverflow() const { return (flags & slotFlags) == overflowRow; }
};

// A page with rows. They stand from the end of the page downwards in the order of their slots; slots of
// deleted rows stay. The functions that read check every offset and throw Corrupt.

[[nodiscard]] inline int slotCount(const View& page, const Layout& layout) {
    const int count = page.u16(layout.slotCountAt);
    if (count > mostSlots + 1) [[unlikely]]
        page.fail(layout.slotCountAt, "too many rows on a page");
    return count;
}
[[nodiscard]] inline std::size_t slotPlace(const Layout& layout, int number) {
    return layout.slotsAt + 2 * static_cast<std::size_t>(number);
}
[[nodiscard]] Slot slotAt(const View& page, const Layout& layout, int number);
/// The same where the number of slots is known and `number` is less.
[[nodiscard]] inline Slot slotAt(const View& page, const Layout& layout, int number, int count) {
    const std::uint16_t packed = page.u16(slotPlace(layout, number));
    const std::uint32_t start = packed & slotOffset;
    const std::uint32_t end =
        number == 0 ? layout.pageSize : page.u16(slotPlace(layout, number - 1)) & slotOffset;
    if (start > end || end > layout.pageSize || start < slotPlace(layout, count)) [[unlikely]]
        page.fail(slotPlace(layout, number), "a row lies outside its page");
    return {start, end - start, static_cast<std::uint16_t>(packed & slotFlags)};
}
/// The bytes of a row; Corrupt when there is no such slot or it is deleted.
[[nodiscard]] View rowAt(const View& page, const Layout& layout, int number);
/// Bytes between the slots and the rows.
[[nodiscard]] std::uint32_t freeSpace(const View& page, const Layout& layout);
[[nodiscard]] std::uint32_t pageOwner(const View& page);
/// A page with rows of `owner`; Corrupt when it is none.
void requireDataPage(const View& page, std::uint32_t owner);
/// No row reaches into another one. Asked before a page is changed; reading does without. Corrupt.
void requireOrder(const View& page, const Layout& layout);

/// A page of which requireOrder() is known to hold: Pager::editRows() gives one. What changes it below keeps
/// that.
class RowEdit : public Edit {
  public:
    explicit RowEdit(const Edit& page) : Edit(page) {}
};

void initDataPage(Edit page, const Layout& layout, std::uint32_t owner);
[[nodiscard]] bool hasRoom(const View& page, const Layout& layout, std::size_t length);
/// Adds a row in a new slot; there must be room.
std::uint8_t appendRow(RowEdit page, const Layout& layout, ByteView row, std::uint16_t flags = 0);
/// Gives a row another length, keeping the other rows, and sets its flags. The bytes of the row are left for
/// the caller to write (at the returned offset). The page must have the room.
std::uint32_t resizeRow(RowEdit page, const Layout& layout, int number, std::size_t length,
                        std::uint16_t flags);
/// Marks a row as deleted and squeezes its bytes out.
void eraseRow(RowEdit page, const Layout& layout, int number);
/// Rows that live and are at home here.
[[nodiscard]] std::uint32_t homesOn(const View& page, const Layout& layout);
/// No row of the page lives.
[[nodiscard]] bool isEmptyPage(const View& page, const Layout& layout);

} // namespace jet
