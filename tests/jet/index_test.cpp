#include "data_page.h"
#include "engine_fixture.h"
#include "index.h"
#include "table_maker.h"
#include "tree_fixture.h"

#include <set>

namespace jet {
namespace {

/// An index by itself, in a file of its own.
class IndexTest : public ::testing::TestWithParam<Format> {
  protected:
    IndexTest() : m_pager(std::make_unique<MemoryFile>(), GetParam()) {
        std::uint32_t mapPage = 0;
        m_def.page = m_pager.allocate();
        m_data.map = newUsageMap(m_pager, mapPage);
        m_data.root = m_pager.allocate();
        initIndexPage(m_pager.edit(m_data.root), m_pager.layout(), m_def.page, true);
        UsageMap(m_pager, m_data.map).add(m_data.root);
        m_index = std::make_unique<Index>(m_pager, m_def.page, m_data);
    }

    static Bytes key(std::uint32_t number, std::size_t length) {
        Bytes bytes(length, 'k');
        for (std::size_t i = 0; i < 4; ++i)
            bytes[i] = static_cast<std::uint8_t>(number >> (24 - 8 * i));
        return bytes;
    }
    static RowPointer row(std::uint32_t number) {
        return {number / 200 + 1, static_cast<std::uint8_t>(number % 200)};
    }

    void insert(std::uint32_t number, std::size_t length) {
        m_index->insert(key(number, length), row(number));
    }
    void remove(std::uint32_t number, std::size_t length) {
        m_index->remove(key(number, length), row(number));
    }

    TreeWalk walk() {
        m_index->settle();
        TreeWalk result(m_pager, m_def, m_data);
        EXPECT_EQ(result.pages, m_index->map().pages().size()) << "the map of the index's pages";
        return result;
    }

    Pager m_pager;
    TableDef m_def;
    IndexData m_data;
    std::unique_ptr<Index> m_index;
};

TEST_P(IndexTest, AscendingKeysFillTheirPages) {
    for (std::uint32_t i = 0; i < 60000; ++i)
        insert(i, 40);
    const TreeWalk tree = walk();
    EXPECT_EQ(tree.entries, 60000U);
    EXPECT_GE(tree.depth(), 3U);
    EXPECT_GT(static_cast<double>(tree.leafBytes) /
                  static_cast<double>(tree.leaves * m_pager.layout().entryRoom()),
              0.95);
}

TEST_P(IndexTest, DescendingKeysFillTheirPages) {
    for (std::uint32_t i = 20000; i-- > 0;)
        insert(i, 40);
    const TreeWalk tree = walk();
    EXPECT_EQ(tree.entries, 20000U);
    EXPECT_GT(static_cast<double>(tree.leafBytes) /
                  static_cast<double>(tree.leaves * m_pager.layout().entryRoom()),
              0.9);
}

TEST_P(IndexTest, KeepsARandomSetThroughGrowthAndDecay) {
    for (std::size_t length : {5U, 30U, 250U}) {
        Random random(static_cast<unsigned>(length));
        std::set<std::uint32_t> model;
        for (int phase = 0; phase < 6; ++phase) {
            // Phases of growth and of decay, the last one down to nothing.
            const int changes = 3000;
            const unsigned deletes = phase % 2 == 0 ? 20 : 80;
            for (int i = 0; i < changes; ++i) {
                const std::uint32_t number = random() % 4000 * (phase < 3 ? 1 : 3);
                const bool has = model.contains(number);
                if (has && random() % 100 < deletes) {
                    remove(number, length);
                    model.erase(number);
                } else if (!has && random() % 100 >= deletes) {
                    insert(number, length);
                    model.insert(number);
                }
            }
            ASSERT_EQ(walk().entries, model.size());
            for (std::uint32_t number : model)
                ASSERT_TRUE(m_index->contains(key(number, length)));
        }
        while (!model.empty()) {
            auto victim = model.lower_bound(random() % 12000);
            if (victim == model.end()) victim = model.begin();
            remove(*victim, length);
            model.erase(victim);
            if (model.size() % 500 == 0) {
                ASSERT_EQ(walk().entries, model.size());
            }
        }
        EXPECT_EQ(walk().pages, 1U) << "only the root is left";
    }
}

// Keys up to the longest, many with a long beginning in common: pages lose and regain most of their room when
// a key with another beginning comes or goes.
TEST_P(IndexTest, KeepsLongKeysThatShareTheirBeginning) {
    const std::size_t longest = Index::longestKey(m_pager.layout());
    const auto longKey = [longest](std::uint32_t number) {
        Bytes bytes(longest - number * 37 % (number % 5 == 0 ? longest - 8 : 9), 'k');
        bytes[number % 3 == 0 ? 0 : (number * 7919) % (bytes.size() - 5)] = static_cast<std::uint8_t>(number);
        for (std::size_t i = 0; i < 4; ++i)
            bytes[bytes.size() - 4 + i] = static_cast<std::uint8_t>(number >> (24 - 8 * i));
        return bytes;
    };
    std::set<std::uint32_t> model;
    Random random(4);
    for (int i = 0; i < 8000; ++i) {
        const std::uint32_t number = random() % 2000;
        if (model.erase(number) != 0)
            m_index->remove(longKey(number), row(number));
        else if (model.insert(number).second)
            m_index->insert(longKey(number), row(number));
        if (i % 500 == 0) {
            ASSERT_EQ(walk().entries, model.size());
        }
    }
    for (std::uint32_t number : model)
        m_index->remove(longKey(number), row(number));
    EXPECT_EQ(walk().pages, 1U);
}

TEST_P(IndexTest, EmptiesFromEitherEnd) {
    for (bool fromTheEnd : {false, true}) {
        for (std::uint32_t i = 0; i < 3000; ++i)
            insert(i, 100);
        for (std::uint32_t i = 0; i < 3000; ++i) {
            remove(fromTheEnd ? 2999 - i : i, 100);
            if (i % 250 == 0) {
                ASSERT_EQ(walk().entries, 2999U - i);
            }
        }
        EXPECT_EQ(walk().pages, 1U);
    }
}

TEST_P(IndexTest, RefusesAnEntryTwiceAndTheRemovalOfNone) {
    insert(1, 10);
    EXPECT_EQ(errorOf([&] { insert(1, 10); }), ErrorKind::Corrupt);
    EXPECT_EQ(errorOf([&] { remove(2, 10); }), ErrorKind::Corrupt);
    EXPECT_EQ(walk().entries, 1U);
}

INSTANTIATE_TEST_SUITE_P(Formats, IndexTest, ::testing::Values(Format::Jet3, Format::Jet4),
                         [](const auto& format) { return format.param == Format::Jet3 ? "Jet3" : "Jet4"; });

} // namespace
} // namespace jet
