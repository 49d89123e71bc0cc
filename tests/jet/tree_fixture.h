#pragma once

#include "index_page.h"
#include "pager.h"
#include "table_def.h"

#include <gtest/gtest.h>

namespace jet {

/// Walks a tree and expects what every sound tree keeps: order, exact separators, a tail on the last lowest
/// node alone, one depth, neighbours that point to each other. Gives the number of entries.
class TreeWalk {
  public:
    TreeWalk(Pager& pager, const TableDef& def, const IndexData& data) : m_pager(pager), m_def(def) {
        visit(data.root, 0, true);
        for (const std::vector<std::uint32_t>& level : m_levels)
            for (std::size_t i = 0; i < level.size(); ++i) {
                const IndexPage page = read(level[i]);
                EXPECT_EQ(page.previous(), i == 0 ? 0 : level[i - 1]);
                EXPECT_EQ(page.next(), i + 1 == level.size() ? 0 : level[i + 1]);
            }
    }

    std::size_t entries = 0;
    std::size_t pages = 0;
    std::size_t leafBytes = 0; ///< used
    std::size_t leaves = 0;
    [[nodiscard]] std::size_t depth() const { return m_levels.size(); }

  private:
    IndexPage read(std::uint32_t page) { return {m_pager.view(page), m_pager.layout(), m_def.page}; }

    /// The last entry below the page.
    Bytes visit(std::uint32_t number, std::size_t level, bool edge) {
        const IndexPage page = read(number);
        ++pages;
        if (m_levels.size() <= level) m_levels.resize(level + 1);
        m_levels[level].push_back(number);
        Bytes last;
        if (page.leaf()) {
            EXPECT_TRUE(m_leafLevel == 0 || m_leafLevel == level) << "leaves at two depths";
            m_leafLevel = level;
            EXPECT_TRUE(!page.empty() || level == 0) << "an empty leaf";
            ++leaves;
            leafBytes += page.end();
            for (std::size_t at = page.begin(); at < page.end(); at = page.after(at)) {
                page.entry(at, last);
                EXPECT_LT(m_before, last) << "entries out of order";
                m_before = last;
                ++entries;
            }
            return last;
        }
        for (std::size_t at = page.begin(); at < page.end(); at = page.after(at)) {
            const bool behind = page.tail() == 0 && page.after(at) == page.end();
            last = visit(page.child(at), level + 1, edge && behind);
            Bytes separator;
            page.entry(at, separator);
            EXPECT_TRUE(separator == last) << "a separator is not the last entry of its child";
        }
        EXPECT_FALSE(page.empty() && level == 0) << "a root with one child";
        if (page.tail() != 0) {
            EXPECT_TRUE(edge) << "a tail inside the tree";
            last = visit(page.tail(), level + 1, edge);
            EXPECT_EQ(m_leafLevel, level + 1) << "a tail above nodes";
        } else if (edge) {
            EXPECT_NE(m_leafLevel, level + 1) << "the last lowest node has no tail";
        }
        return last;
    }

    Pager& m_pager;
    const TableDef& m_def;
    std::vector<std::vector<std::uint32_t>> m_levels;
    std::size_t m_leafLevel = 0;
    Bytes m_before;
};

} // namespace jet
