#pragma once

#include "bytes.h"
#include "layout.h"

#include <functional>
#include <vector>

// How a set of pages is written down: a row that holds a window of bits, or points to map pages.

namespace jet {

enum class MapKind : std::uint8_t { Window = 0, Pointers = 1 }; ///< first byte of the row

constexpr std::uint32_t mapStartAt = 1;    ///< of a window: its first page
constexpr std::uint32_t mapBitsAt = 5;     ///< of a window, behind that
constexpr std::uint32_t mapPointersAt = 1; ///< of pointers, behind the kind

/// Shows a page of the file.
using PageSource = std::function<View(std::uint32_t)>;

/// Calls `take` for every page whose bit is set in the usage map that `row` holds, and collects the map pages
/// of a map of the referring kind. Corrupt.
void readMapRow(const Layout& layout, const View& row, const PageSource& page,
                const std::function<void(std::uint32_t)>& take, std::vector<std::uint32_t>& mapPages);

void initMapPage(Edit page);

/// The bytes of an empty map.
[[nodiscard]] std::vector<std::uint8_t> emptyMapRow(const Layout& layout);

} // namespace jet
