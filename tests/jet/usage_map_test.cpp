#include "data_page.h"
#include "engine_fixture.h"
#include "pager.h"
#include "table_maker.h"
#include "usage_map.h"

#include <set>

namespace jet {
namespace {

/// The pages that the map on page 1 shows as free.
std::set<std::uint32_t> freeOnDisk(Pager& pager) {
    std::set<std::uint32_t> pages;
    std::vector<std::uint32_t> mapPages;
    readUsageMap(
        pager, rowAt(pager.view(freePagesPage), pager.layout(), 0),
        [&](std::uint32_t page) { pages.insert(page); }, mapPages);
    return pages;
}

class UsageMapTest : public ::testing::TestWithParam<Format> {
  protected:
    UsageMapTest() : pager(std::make_unique<MemoryFile>(), GetParam()), where(newUsageMap(pager, mapPage)) {}

    void growTo(std::uint32_t pages) {
        while (pager.pageCount() < pages)
            (void)pager.allocate();
    }
    static std::vector<std::uint32_t> listOf(const std::set<std::uint32_t>& pages) {
        return {pages.begin(), pages.end()};
    }

    Pager pager;
    std::uint32_t mapPage = 0;
    RowPointer where;
};

TEST_P(UsageMapTest, HoldsAnySetOfPages) {
    const std::uint32_t window = pager.layout().mapBits();
    growTo(6 * window);
    const std::uint32_t last = pager.pageCount() - 1;
    struct Case {
        const char* what;
        std::set<std::uint32_t> pages;
    };
    const std::vector<Case> cases{
        {"in the first window", {5, 6, window - 1}},
        {"one page far away", {last}},
        {"a window that must move down", {4 * window + 3, 4 * window + 1, 4 * window - 100}},
        {"more than a window", {5, 3 * window, last}},
    };
    for (const Case& c : cases) {
        UsageMap map(pager, where);
        // In falling order, so that windows have to move.
        for (auto page = c.pages.rbegin(); page != c.pages.rend(); ++page)
            map.add(*page);
        EXPECT_EQ(map.pages(), listOf(c.pages)) << c.what;
        EXPECT_EQ(UsageMap(pager, where).pages(), listOf(c.pages)) << c.what << ", read again";
        EXPECT_EQ(map.last(), *c.pages.rbegin());
        const std::vector<std::uint32_t> mapPages = map.mapPages();
        map.clear();
        EXPECT_EQ(UsageMap(pager, where).pages(), std::vector<std::uint32_t>{}) << c.what;
        for (std::uint32_t page : mapPages)
            EXPECT_TRUE(page == 0 || pager.freePages().contains(page)) << "a map page was not given back";
    }
}

TEST_P(UsageMapTest, APageThatLooksAliveIsNotHandedOut) {
    growTo(20);
    const std::uint32_t alive = 10;
    const std::uint32_t released = 12;
    initDataPage(pager.edit(alive), pager.layout(), 2);
    pager.freePages().release(alive); // as a damaged map says
    pager.release(released, PageKind::Released);
    EXPECT_EQ(pager.allocate(), released);
    EXPECT_EQ(pager.allocate(), 20U) << "the file grows instead";
    EXPECT_NO_THROW(requireDataPage(pager.view(alive), 2));
    EXPECT_TRUE(pager.freePages().contains(alive)) << "the map is left as it was";
}

TEST_P(UsageMapTest, FollowsAModelOfRandomChanges) {
    growTo(3000);
    UsageMap map(pager, where);
    std::set<std::uint32_t> model;
    Random random(11);
    for (int i = 0; i < 5000; ++i) {
        const std::uint32_t page = 10 + random() % (i < 500 ? 300 : 2900);
        if (random() % 2 == 0) {
            map.add(page);
            model.insert(page);
        } else {
            map.remove(page);
            model.erase(page);
        }
    }
    EXPECT_EQ(map.pages(), listOf(model));
    EXPECT_EQ(UsageMap(pager, where).pages(), listOf(model));
    EXPECT_EQ(map.next(1000), *model.lower_bound(1000));
}

TEST_P(UsageMapTest, FreePagesAreFoundAgain) {
    growTo(200);
    for (std::uint32_t page : {150U, 40U, 41U})
        pager.release(page);
    pager.flush();
    const std::set<std::uint32_t> again = freeOnDisk(pager);
    for (std::uint32_t page = 3; page < 200; ++page)
        EXPECT_EQ(again.contains(page), page == 150 || page == 40 || page == 41) << page;
    EXPECT_EQ(pager.allocate(100), 150U);
    EXPECT_EQ(pager.allocate(), 40U);
    EXPECT_EQ(pager.allocate(), 41U);
    EXPECT_EQ(pager.allocate(), 200U) << "without a free page the file grows";
    EXPECT_EQ(pager.view(40).u32(0), 0U) << "a page that is taken again is empty";
}

INSTANTIATE_TEST_SUITE_P(Formats, UsageMapTest, ::testing::Values(Format::Jet3, Format::Jet4),
                         [](const auto& format) { return format.param == Format::Jet3 ? "Jet3" : "Jet4"; });

TEST(FreePagesTest, TheMapGrowsWithTheFileBeyondItsPage) {
    // Page 1 of the older format has room for some 15000 pages; behind that, map pages hold the bits.
    Pager pager(std::make_unique<MemoryFile>(), Format::Jet3);
    for (std::uint32_t pages : {500U, 1500U, 14000U, 16000U, 40000U}) {
        while (pager.pageCount() < pages)
            (void)pager.allocate();
        const std::set<std::uint32_t> freed{pages - 4, pages - 5, pages - 6, pages - 7};
        for (std::uint32_t page : freed)
            pager.release(page);
        pager.flush(); // may itself take some of them, for the map
        const std::set<std::uint32_t> again = freeOnDisk(pager);
        std::size_t free = 0;
        for (std::uint32_t page = 3; page < pager.pageCount(); ++page) {
            ASSERT_EQ(again.contains(page), pager.freePages().contains(page)) << page << " of " << pages;
            free += again.contains(page);
            ASSERT_TRUE(!again.contains(page) || freed.contains(page)) << page << " of " << pages;
        }
        EXPECT_GE(free, 2U);
    }
    EXPECT_EQ(pager.view(freePagesPage).u8(slotAt(pager.view(freePagesPage), pager.layout(), 0).start), 1);
}

} // namespace
} // namespace jet
