#pragma once

#include "value.h"

#include <cstddef>
#include <cstdint>

// Where the fields of the pages lie in the two formats.

namespace jet {

enum class PageKind : std::uint8_t {
    Header = 0,
    Data = 1,
    TableDef = 2,
    IndexNode = 3,
    IndexLeaf = 4,
    UsageMap = 5,
    ReleasedTableDef = 8,
    Released = 9,
};

constexpr std::uint32_t freePagesPage = 1;           ///< row 0: free pages, row 1: a map that is always empty
constexpr std::uint32_t catalogPage = 2;             ///< definition of MSysObjects
constexpr std::uint32_t ownerAt = 4;                 ///< of data and index pages
constexpr std::uint32_t freeSpaceAt = 2;             ///< of data and index pages
constexpr std::uint32_t usageMapOwner = 0;           ///< owner of data pages that hold usage maps
constexpr std::uint32_t longValueOwner = 0x4C41564C; ///< "LVAL"
constexpr std::size_t mapPageHeader = 4;             ///< bytes before the bits of a usage map page
constexpr int mostSlots = 255;
constexpr int mostColumns = 255;
constexpr int mostKeyColumns = 10;

struct Layout {
    Format format;
    std::uint32_t pageSize;
    std::uint64_t mostBytes; ///< limit of the file's size

    // Data pages.
    std::uint32_t slotCountAt;
    std::uint32_t slotsAt;
    std::uint32_t longestRow;
    std::uint32_t longValuePiece; ///< longest row of a page with long values

    std::uint32_t mapRow; ///< bytes of an inline usage map row

    // Index pages.
    std::uint32_t previousAt;
    std::uint32_t nextAt;
    std::uint32_t tailAt;
    std::uint32_t prefixAt;
    std::uint32_t prefixBytes;
    std::uint32_t nodeByteAt;
    std::uint32_t maskAt;
    std::uint32_t maskBytes;
    std::uint32_t entriesAt;

    // Table definitions.
    std::uint32_t rowCountAt;
    std::uint32_t autonumberAt;
    std::uint32_t tableKindAt;
    std::uint32_t maxColumnsAt;
    std::uint32_t variableSlotsAt;
    std::uint32_t columnCountAt;
    std::uint32_t indexCountAt;
    std::uint32_t indexDataCountAt;
    std::uint32_t ownedPagesAt;
    std::uint32_t freeSpacePagesAt;
    std::uint32_t countersAt; ///< A and B of each index data; here the first block ends
    std::uint32_t counterBytes;
    std::uint32_t columnBytes;
    std::uint32_t indexDataBytes;
    std::uint32_t indexBytes;

    [[nodiscard]] std::uint32_t mapBits() const { return (mapRow - 5) * 8; }
    [[nodiscard]] std::uint32_t mapPointers() const { return (mapRow - 1) / 4; }
    [[nodiscard]] std::uint32_t mapPageBits() const {
        return (pageSize - static_cast<std::uint32_t>(mapPageHeader)) * 8;
    }
    [[nodiscard]] std::uint32_t entryRoom() const { return pageSize - entriesAt; }
    [[nodiscard]] bool jet4() const { return format == Format::Jet4; }
};

constexpr Layout jet3Layout{
    .format = Format::Jet3,
    .pageSize = 2048,
    .mostBytes = std::uint64_t{1} << 30,
    .slotCountAt = 8,
    .slotsAt = 10,
    .longestRow = 2012,
    .longValuePiece = 2036,
    .mapRow = 133,
    .previousAt = 8,
    .nextAt = 12,
    .tailAt = 16,
    .prefixAt = 20,
    .prefixBytes = 1,
    .nodeByteAt = 21,
    .maskAt = 22,
    .maskBytes = 226,
    .entriesAt = 0xF8,
    .rowCountAt = 0x0C,
    .autonumberAt = 0x10,
    .tableKindAt = 0x14,
    .maxColumnsAt = 0x15,
    .variableSlotsAt = 0x17,
    .columnCountAt = 0x19,
    .indexCountAt = 0x1B,
    .indexDataCountAt = 0x1F,
    .ownedPagesAt = 0x23,
    .freeSpacePagesAt = 0x27,
    .countersAt = 0x2B,
    .counterBytes = 8,
    .columnBytes = 18,
    .indexDataBytes = 39,
    .indexBytes = 20,
};

constexpr Layout jet4Layout{
    .format = Format::Jet4,
    .pageSize = 4096,
    .mostBytes = std::uint64_t{1} << 31,
    .slotCountAt = 12,
    .slotsAt = 14,
    .longestRow = 4060,
    .longValuePiece = 4076,
    .mapRow = 69,
    .previousAt = 12,
    .nextAt = 16,
    .tailAt = 20,
    .prefixAt = 24,
    .prefixBytes = 2,
    .nodeByteAt = 26,
    .maskAt = 27,
    .maskBytes = 453,
    .entriesAt = 0x1E0,
    .rowCountAt = 0x10,
    .autonumberAt = 0x14,
    .tableKindAt = 0x28,
    .maxColumnsAt = 0x29,
    .variableSlotsAt = 0x2B,
    .columnCountAt = 0x2D,
    .indexCountAt = 0x2F,
    .indexDataCountAt = 0x33,
    .ownedPagesAt = 0x37,
    .freeSpacePagesAt = 0x3B,
    .countersAt = 0x3F,
    .counterBytes = 12,
    .columnBytes = 25,
    .indexDataBytes = 52,
    .indexBytes = 28,
};

[[nodiscard]] constexpr const Layout& layoutOf(Format format) {
    return format == Format::Jet3 ? jet3Layout : jet4Layout;
}

/// Names a row: a page and a slot. In the file four bytes, the row first; all zero = none.
struct RowPointer {
    std::uint32_t page = 0;
    std::uint8_t row = 0;

    static RowPointer unpack(std::uint32_t packed) {
        return {packed >> 8, static_cast<std::uint8_t>(packed & 0xFF)};
    }
    [[nodiscard]] std::uint32_t pack() const { return page << 8 | row; }
    [[nodiscard]] bool none() const { return page == 0; }
    friend bool operator==(RowPointer, RowPointer) = default;
};

} // namespace jet
