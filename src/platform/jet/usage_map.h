#pragma once

#include "map_row.h"

namespace jet {

class Pager;

/// readMapRow() over the pages of a database.
void readUsageMap(Pager& pager, const View& row, const std::function<void(std::uint32_t)>& take,
                  std::vector<std::uint32_t>& mapPages);

/// A set of pages of one table, index or column, kept in a row of a usage map page: a window of bits in the
/// row, or pointers to map pages when the pages lie too far apart. Changes go to the pages at once.
class UsageMap {
  public:
    UsageMap(Pager& pager, RowPointer where); ///< reads the map; Corrupt

    [[nodiscard]] RowPointer where() const { return m_where; }
    [[nodiscard]] bool contains(std::uint32_t page) const;
    /// The lowest page of the set that is at least `from`; 0 = none.
    [[nodiscard]] std::uint32_t next(std::uint32_t from) const;
    [[nodiscard]] std::uint32_t last() const; ///< the highest page; 0 = none
    [[nodiscard]] std::vector<std::uint32_t> pages() const;
    [[nodiscard]] const std::vector<std::uint32_t>& mapPages() const { return m_mapPages; }

    void add(std::uint32_t page);
    void remove(std::uint32_t page);
    void clear(); ///< takes all pages out; they are not released

  private:
    Edit editRow(std::uint32_t& start, std::uint32_t& length);
    void setBit(std::uint32_t page, bool on);
    void widen(std::uint32_t page);
    void moveWindow(std::uint32_t first);
    void useMapPages();

    Pager& m_pager;
    RowPointer m_where;
    std::vector<std::uint64_t> m_bits;
    std::vector<std::uint32_t> m_mapPages; ///< in the order of the pointers, 0 = none
    bool m_pointers = false;
    std::uint32_t m_start = 0;  ///< first page of the window
    std::uint32_t m_window = 0; ///< pages that the row has bits for
};

} // namespace jet
