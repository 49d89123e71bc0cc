#include "check_table.h"
#include "data_page.h"
#include "engine_fixture.h"
#include "foreign_tree.h"
#include "table_maker.h"

#include <set>

namespace jet {
namespace {

Bytes key(std::uint32_t number, std::size_t length) {
    Bytes bytes(length, 'k');
    for (std::size_t i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::uint8_t>(number >> (24 - 8 * i));
    return bytes;
}

/// Keys up to the longest, many with a long beginning in common: pages lose and regain most of their room
/// when a key with another beginning comes or goes.
Bytes longKey(std::uint32_t number, std::size_t longest) {
    Bytes bytes(longest - number * 37 % (number % 5 == 0 ? longest - 8 : 9), 'k');
    bytes[number % 3 == 0 ? 0 : (number * 7919) % (bytes.size() - 5)] = static_cast<std::uint8_t>(number);
    for (std::size_t i = 0; i < 4; ++i)
        bytes[bytes.size() - 4 + i] = static_cast<std::uint8_t>(number >> (24 - 8 * i));
    return bytes;
}

/// An index by itself in a file of its own, beside the set of numbers whose keys it has.
class Tree {
  public:
    Tree(Format format, std::function<Bytes(std::uint32_t)> keyOf)
        : pager(std::make_unique<MemoryFile>(), format), m_keyOf(std::move(keyOf)) {
        std::uint32_t mapPage = 0;
        m_def.page = pager.allocate();
        IndexData& data = m_def.indexData.emplace_back();
        data.map = newUsageMap(pager, mapPage);
        data.root = pager.allocate();
        initIndexPage(pager.edit(data.root), pager.layout(), m_def.page, true);
        UsageMap(pager, data.map).add(data.root);
        index.emplace(pager, m_def.page, data);
    }

    /// Fills it as another program does.
    void buildForeign(const std::set<std::uint32_t>& numbers, std::size_t perPage, Tails tails) {
        model = numbers;
        std::vector<Bytes> entries;
        for (const ExpectedEntry& entry : expected())
            entries.push_back(entry.bytes);
        ForeignTree(pager, m_def.page, m_def.indexData[0], perPage, tails).build(entries);
        index.emplace(pager, m_def.page, m_def.indexData[0]);
    }
    void insert(std::uint32_t number) {
        if (model.insert(number).second) index->insert(m_keyOf(number), row(number));
    }
    void remove(std::uint32_t number) {
        if (model.erase(number) != 0) index->remove(m_keyOf(number), row(number));
    }
    [[nodiscard]] bool has(std::uint32_t number) const { return index->contains(m_keyOf(number)); }

    /// What the strict check has against it, and the check before a commit.
    std::vector<std::string> faults() {
        index->settle();
        pager.flush();
        m_def.indexData[0].keys = static_cast<std::uint32_t>(model.size());
        Faults found(CheckLevel::Strict);
        PageLedger ledger(pager, found);
        std::vector<ExpectedEntry> entries = expected();
        checkIndex(pager, ledger, found, m_def, 0, "the index", entries, true);
        (void)found.guarded("before the commit", [&] { index->verify(); });
        return found.take();
    }
    [[nodiscard]] std::size_t pages() { return index->map().pages().size(); }
    /// Of the bytes for entries.
    [[nodiscard]] double fill() {
        std::size_t free = 0;
        for (std::uint32_t page : index->map().pages())
            free += pager.view(page).u16(freeSpaceAt);
        return 1 - static_cast<double>(free) / static_cast<double>(pages() * pager.layout().entryRoom());
    }

    Pager pager;
    std::set<std::uint32_t> model;
    std::optional<Index> index;

  private:
    static RowPointer row(std::uint32_t number) {
        return {number / 200 + 1, static_cast<std::uint8_t>(number % 200)};
    }
    [[nodiscard]] std::vector<ExpectedEntry> expected() const {
        std::vector<ExpectedEntry> entries;
        for (std::uint32_t number : model) {
            Bytes bytes = m_keyOf(number);
            const RowPointer at = row(number);
            for (std::uint32_t byte : {at.page >> 16, at.page >> 8, at.page, std::uint32_t{at.row}})
                put8(bytes, byte & 0xFF);
            entries.push_back({std::move(bytes), false});
        }
        return entries;
    }

    std::function<Bytes(std::uint32_t)> m_keyOf;
    TableDef m_def;
};

/// A thousand changes of one kind: numbers come shuffled, behind the others or as a run between them; ranges
/// go, at either end too; keys change.
void change(Tree& tree, unsigned kind, Random& random) {
    const std::uint32_t highest = tree.model.empty() ? 0 : *tree.model.rbegin();
    const std::uint32_t place = random() % (highest + 1);
    const auto removeFrom = [&](std::uint32_t lowest, std::size_t count) {
        for (auto at = tree.model.lower_bound(lowest); count-- > 0 && at != tree.model.end();)
            tree.remove(*at++);
    };
    for (std::uint32_t i = 1; kind < 3 && i <= 1000; ++i)
        tree.insert(kind == 0 ? random() % (highest + 1000) : (kind == 1 ? highest : place) + i);
    if (kind == 3) removeFrom(place, 1000);
    if (kind == 4) {
        removeFrom(0, 500);
        for (int i = 0; i < 500 && !tree.model.empty(); ++i)
            tree.remove(*tree.model.rbegin());
    }
    for (int i = 0; kind == 5 && i < 500 && !tree.model.empty(); ++i) {
        auto victim = tree.model.lower_bound(random() % (highest + 1));
        if (victim == tree.model.end()) victim = tree.model.begin();
        tree.remove(*victim);
        tree.insert(random() % (highest + 1));
    }
}

class IndexTest : public ::testing::TestWithParam<Format> {};

// Three levels and more, built by us or by others, through a hundred thousand changes and down to nothing.
TEST_P(IndexTest, KeepsTreesOfEitherFormThroughGrowthAndDecay) {
    std::set<std::uint32_t> spread;
    for (std::uint32_t i = 0; i < 6000; ++i)
        spread.insert(i * 16);
    struct Case {
        const char* what;
        std::size_t length, perPage;
        std::optional<Tails> foreign;
        unsigned rounds;
    };
    const std::vector<Case> cases{{"ours", 40, 0, std::nullopt, 100},
                                  {"ours with short keys", 5, 0, std::nullopt, 20},
                                  {"a tail in every lowest node", 40, 18, Tails::Every, 100},
                                  {"some tails, full of long keys", 250, 5, Tails::EverySecond, 100},
                                  {"tails, nearly nothing on a page", 100, 2, Tails::Every, 20}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Tree tree(GetParam(), [&](std::uint32_t number) { return key(number, c.length); });
        if (c.foreign)
            tree.buildForeign(spread, c.perPage, *c.foreign);
        else
            for (std::uint32_t number : spread)
                tree.insert(number);
        Random random(static_cast<unsigned>(c.length));
        for (unsigned round = 0; round < c.rounds; ++round) {
            change(tree, round % 6, random);
            ASSERT_EQ(tree.faults(), std::vector<std::string>{}) << "round " << round;
        }
        for (std::uint32_t number : tree.model)
            ASSERT_TRUE(tree.has(number));
        while (!tree.model.empty()) {
            const std::uint32_t from = random() % (*tree.model.rbegin() + 1);
            for (auto at = tree.model.lower_bound(from); at != tree.model.end() && *at < from + 3000;)
                tree.remove(*at++);
            ASSERT_EQ(tree.faults(), std::vector<std::string>{}) << tree.model.size() << " left";
        }
        EXPECT_EQ(tree.pages(), 1U) << "only the root is left";
    }
}

TEST_P(IndexTest, KeepsLongKeysThatShareTheirBeginning) {
    const std::size_t longest = Index::longestKey(layoutOf(GetParam()));
    Tree tree(GetParam(), [&](std::uint32_t number) { return longKey(number, longest); });
    Random random(4);
    for (int i = 0; i < 8000; ++i) {
        const std::uint32_t number = random() % 2000;
        if (tree.model.contains(number))
            tree.remove(number);
        else
            tree.insert(number);
        if (i % 500 == 0) {
            ASSERT_EQ(tree.faults(), std::vector<std::string>{});
        }
    }
    while (!tree.model.empty())
        tree.remove(*tree.model.begin());
    EXPECT_EQ(tree.pages(), 1U);
}

TEST_P(IndexTest, KeysInEitherOrderFillTheirPages) {
    for (bool ascending : {true, false}) {
        Tree tree(GetParam(), [](std::uint32_t number) { return key(number, 40); });
        for (std::uint32_t i = 0; i < 30000; ++i)
            tree.insert(ascending ? i : 30000 - i);
        EXPECT_EQ(tree.faults(), std::vector<std::string>{});
        EXPECT_GT(tree.fill(), ascending ? 0.95 : 0.9);
    }
}

TEST_P(IndexTest, RefusesAnEntryTwiceAndTheRemovalOfNone) {
    Tree tree(GetParam(), [](std::uint32_t number) { return key(number, 10); });
    tree.insert(1);
    EXPECT_EQ(errorOf([&] { tree.index->insert(key(1, 10), {1, 1}); }), ErrorKind::Corrupt);
    EXPECT_EQ(errorOf([&] { tree.index->remove(key(2, 10), {1, 2}); }), ErrorKind::Corrupt);
    EXPECT_EQ(tree.faults(), std::vector<std::string>{});
}

// What a wrong step would leave behind on the pages that were changed.
TEST_P(IndexTest, ATreeThatDoesNotHoldIsNoticedBeforeACommit) {
    const Layout& layout = layoutOf(GetParam());
    struct Case {
        const char* what;
        std::function<void(Tree&, std::uint32_t leaf, std::uint32_t next)> harm;
    };
    const std::vector<Case> cases{
        {"chained", [&](Tree& t, auto leaf, auto) { t.pager.edit(leaf).set32(layout.nextAt, 0); }},
        {"chained", [&](Tree& t, auto, auto next) { t.pager.edit(next).set32(layout.previousAt, 0); }},
        {"", [&](Tree& t, auto leaf, auto) { t.pager.edit(leaf).set8(layout.entriesAt, 0xFF); }},
        {"", [&](Tree& t, auto, auto next) { t.pager.edit(next).set8(layout.entriesAt, 0x00); }},
    };
    for (const Case& c : cases) {
        Tree tree(GetParam(), [](std::uint32_t number) { return key(number << 16 | 0x1000, 40); });
        std::set<std::uint32_t> numbers;
        for (std::uint32_t i = 0; i < 3000; ++i)
            numbers.insert(i);
        tree.buildForeign(numbers, 12, Tails::Every);
        tree.index->insert(key(1500U << 16, 40), {500, 1});
        std::uint32_t leaf = 0;
        for (std::uint32_t page : tree.index->map().pages()) {
            const View view = tree.pager.view(page);
            const IndexPage read(view, layout, view.u32(ownerAt));
            const std::size_t at = read.find(key(1500U << 16, 40));
            if (read.leaf() && at != read.end() && read.startsWith(at, key(1500U << 16, 40))) leaf = page;
        }
        ASSERT_NE(leaf, 0U);
        c.harm(tree, leaf, tree.pager.view(leaf).u32(layout.nextAt));
        try {
            tree.index->verify();
            ADD_FAILURE() << "held";
        } catch (const Error& error) {
            EXPECT_EQ(error.kind(), ErrorKind::Corrupt);
            EXPECT_NE(error.text().find(c.what), std::string::npos) << error.text();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, IndexTest, ::testing::Values(Format::Jet3, Format::Jet4),
                         [](const auto& format) { return format.param == Format::Jet3 ? "Jet3" : "Jet4"; });

} // namespace
} // namespace jet
