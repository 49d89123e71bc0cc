#pragma once

#include "layout.h"

#include <cstdint>
#include <vector>

namespace jet {

class Pager;

/// The set of free pages, kept in the first row of page 1: inline as long as page 1 has room for one bit a
/// page, else as pointers to map pages. Pages behind the end of the file count as free.
class FreePages {
  public:
    explicit FreePages(Pager& pager); ///< reads the map; Corrupt

    [[nodiscard]] bool contains(std::uint32_t page) const;
    /// The lowest free page of the file that is at least `lowest`; 0 = none.
    [[nodiscard]] std::uint32_t take(std::uint32_t lowest);
    /// `page` was added behind the end of the file and is used.
    void use(std::uint32_t page);
    void release(std::uint32_t page);
    /// `page`, just taken, holds something: it stays marked as free and is not taken again.
    void doubt(std::uint32_t page);
    void save(); ///< writes the map when it changed

  private:
    void saveInline(std::uint32_t rowBytes);
    void savePages();

    Pager& m_pager;
    std::vector<std::uint64_t> m_free;     ///< bit set = free
    std::vector<std::uint64_t> m_doubtful; ///< bit set = free by the map alone
    std::vector<std::uint32_t> m_mapPages;
    std::uint32_t m_hint = catalogPage + 1; ///< no free page lies below
    bool m_changed = false;
};

} // namespace jet
