#pragma once

#include "index_page.h"
#include "table_def.h"
#include "usage_map.h"

#include <algorithm>
#include <array>
#include <functional>

namespace jet {

class Pager;

/// A tree of keys: leaves with one entry a row in ascending order of their bytes, chained; above them nodes
/// that hold the last entry of each child. The last child of a node can hang on its tail instead, without an
/// entry: in trees made here that is the very last leaf alone, other writers give every lowest node a tail.
/// Both forms may stand in one tree. The root keeps its page.
class Index {
  public:
    Index(Pager& pager, std::uint32_t owner, IndexData& data);

    /// Bytes of the longest key that can be entered: three entries fit on any page, so that trees stay low.
    [[nodiscard]] static std::size_t longestKey(const Layout& layout) {
        return layout.entryRoom() / 3 - entryRowBytes;
    }

    /// Some entry has exactly this key.
    [[nodiscard]] bool contains(ByteView key) const;
    /// Calls `take` for the rows whose keys start with `key`, in order, until it returns false. The key of an
    /// empty Binary starts those of all others.
    void each(ByteView key, const std::function<bool(RowPointer)>& take) const;

    void insert(ByteView key, RowPointer row);
    void remove(ByteView key, RowPointer row); ///< Corrupt when the entry is not there
    void clear();                              ///< gives all pages but the root back
    /// Gives the separators at the right edge, which are left open while entries are added, their final
    /// value.
    void settle();
    /// Looks at the pages that were touched since the last call, from the root down: each leaf is chained to
    /// the one before it in the tree, and separators lie between the children. Corrupt, with what is wrong.
    void verify();

    [[nodiscard]] UsageMap& map() { return m_map; }

  private:
    /// A page on the way down and the place of the entry that was followed.
    struct Step {
        std::uint32_t page;
        std::uint32_t at;
        bool viaTail;
        bool beyond; ///< every separator of the node is less than what was wanted
        bool edge;   ///< nothing lies to the right of the page
    };
    struct Path {
        static constexpr std::size_t most = 24;
        std::array<Step, most> steps;
        std::size_t size = 0;
        Step& back() { return steps[size - 1]; }
        /// Trees are low: only the steps that were made are copied.
        void take(const Path& other) {
            size = other.size;
            std::copy_n(other.steps.begin(), size, steps.begin());
        }
    };

    using TakeEntry = std::function<bool(const IndexPage& page, std::size_t at)>;

    static void makeEntry(ByteView key, RowPointer row, std::vector<std::uint8_t>& entry);
    void eachEntry(ByteView key, const TakeEntry& take) const;
    [[nodiscard]] IndexPage read(std::uint32_t page) const;
    void descend(ByteView wanted, Path& path) const;
    [[nodiscard]] bool descendAgain(ByteView wanted, Path& path) const;
    [[nodiscard]] bool isWhereLastWas(const IndexPage& leaf, ByteView wanted) const;
    [[nodiscard]] bool standsOn(const Path& path, ByteView entry) const;
    [[nodiscard]] std::vector<std::uint8_t> entryOf(RowPointer row);
    void put(Path& path, std::size_t level, ByteView entry);
    void split(Path& path, std::size_t level, const EntryList& entries, std::size_t fresh);
    void splitRoot(const EntryList& entries, std::size_t middle, bool leaf);
    [[nodiscard]] std::size_t splitPlace(const EntryList& entries, std::size_t fresh, bool first, bool last,
                                         std::size_t trail) const;
    void fixSeparators(ByteView entry, bool exactEdge);
    bool fixSeparator(Path& path, std::size_t level, ByteView last, bool exactEdge);
    void removePage(Path& path, std::size_t level);
    void removeChild(Path& path, std::size_t level);
    void makeTail(std::uint32_t node);
    void settleTailNode(Path& path, std::size_t level);
    [[nodiscard]] std::vector<std::uint8_t> lastEntryBelow(std::uint32_t page) const;
    void collapseRoot();
    std::uint32_t allocate(bool leaf);
    void link(std::uint32_t left, std::uint32_t right);
    [[nodiscard]] Edit edit(std::uint32_t page);
    [[nodiscard]] Edit editOwn(std::uint32_t page);
    void giveBack(std::uint32_t page);

    Pager& m_pager;
    std::uint32_t m_owner;
    IndexData& m_data;
    UsageMap m_map;
    bool m_edgeOpen = false;
    std::vector<bool> m_touched;       ///< by page; what verify() has to look at
    std::size_t m_searched = 0;        ///< entries, by entryOf()
    std::vector<std::uint8_t> m_entry; ///< kept to be used again
    mutable Path m_last; ///< the way that was taken last; size 0 once the tree has changed its shape
    mutable std::vector<std::uint8_t> m_lastWanted; ///< what was wanted; empty once the leaf has changed
};

} // namespace jet
