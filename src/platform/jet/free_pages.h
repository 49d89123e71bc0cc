#pragma once

#include "layout.h"

#include <cstdint>
#include <vector>

namespace jet {

/// The set of free pages. Pages behind the end of the file count as free. The pager keeps one and brings it
/// from and to the first row of page 1.
class FreePages {
  public:
    explicit FreePages(std::uint32_t pageCount) : m_pageCount(pageCount), m_free((pageCount + 63) / 64) {}

    [[nodiscard]] bool contains(std::uint32_t page) const;
    /// Marks a page of the file as free while the set is read.
    void put(std::uint32_t page);
    /// The lowest free page of the file that is at least `lowest`; 0 = none.
    [[nodiscard]] std::uint32_t take(std::uint32_t lowest);
    /// `page` was added behind the end of the file and is used.
    void use(std::uint32_t page);
    void release(std::uint32_t page);
    /// `page`, just taken, holds something: it stays marked as free and is not taken again.
    void doubt(std::uint32_t page);

    [[nodiscard]] bool changed() const { return m_changed; }
    void saved() { m_changed = false; }
    /// Bits of the eight pages from `first` on, as a map has them.
    [[nodiscard]] std::uint8_t byteAt(std::uint32_t first) const;

  private:
    std::uint32_t m_pageCount;
    std::vector<std::uint64_t> m_free;      ///< bit set = free
    std::vector<std::uint64_t> m_doubtful;  ///< bit set = free by the map alone
    std::uint32_t m_hint = catalogPage + 1; ///< no free page lies below
    bool m_changed = false;
};

} // namespace jet
