#include "survey/book_pages.h"

#include "basic/numbers.h"
#include "field_book.h"
#include "sheet/book.h"

#include <gmock/gmock.h>

#include <set>

namespace {

using survey::BookPages;
using survey::PageLine;

/// A page as it is printed: row, B.S., F.S. of each line; "+" for a line brought forward.
std::string shown(const survey::BookPage& page) {
    std::string all;
    for (const PageLine& line : page.lines)
        all += (line.forward ? "+" : std::to_string(line.row)) + ":" + line.backSight + "/" + line.foreSight +
               " ";
    return all;
}

double printed(std::string text) {
    if (text.starts_with('(')) text = text.substr(1);
    return basic::val(text);
}

TEST(BookPages, OpenWithABackSightAndCloseWithAForeSight) {
    sheet::Book book;
    keyRows(book.MSFG, {",,,,1.5,,,,100", "00-000,,0,,,1.1", "00-010,,0,,,1.2", // closes on an I.S.
                        "00-020,,0,,,1.3", "CP,,,,1.4,,1.0", "00-030,,0,,,0.9", // in the middle
                        "CP,,,,0.8,,1.7", "00-040,,0,,,1.2"});
    survey::Runs runs(book.MSFG);
    const BookPages pages(book.MSFG, runs, 3);
    std::vector<std::string> all;
    for (int k = 0; k < pages.count(); ++k)
        all.push_back(shown(pages.page(k)));
    EXPECT_THAT(all, testing::ElementsAre("1:1.5/ 2:/ 3:/(1.2) ", "+:(1.2)/ 4:/ 5:/1.0 ",
                                          "+:1.4/ 6:/ 7:/1.7 ", "+:0.8/ 8:/(1.2) "));
    EXPECT_EQ(pages.sums().closingInterSight, 8);
    EXPECT_NEAR(pages.sums().repeated, 1.2, 1e-9);
    // A row of two lines needs its room, and a last back sight without a sight is left out.
    keyRows(book.MSFG, {",,,,1.5,,,,100", "00-000,,0,,,1.1", "CP,,,,1.4,,1.0", ",,,,,,,,,the end"});
    const BookPages two(book.MSFG, runs, 2, [](int row) { return row == 4 ? 2 : 1; });
    EXPECT_EQ(shown(two.page(1)) + shown(two.page(2)), "+:(1.1)/ 3:[1.4]/1.0 4:/ ");
    EXPECT_EQ(two.sums().unusedBackSight, 3);
}

// Every page of every book can be summed by itself, and the pages together by the book.
TEST(BookPages, AddUp) {
    for (const char* name : {"gsi-pv16", "tramo1-derived", "ge120-loop", "nptel-ex14-1", "sprinter-211264"}) {
        sheet::Book book;
        loadBook(book, name);
        survey::Runs runs(book.MSFG);
        for (const int lines : {2, 3, 5, 7, 40}) {
            const BookPages pages(book.MSFG, runs, lines);
            std::multiset<int> rows;
            double back = 0;
            for (int k = 0; k < pages.count(); ++k) {
                const survey::BookPage page = pages.page(k);
                double pageBack = 0;
                double pageFore = 0;
                for (const PageLine& line : page.lines) {
                    if (!line.forward) rows.insert(line.row);
                    pageBack += printed(line.backSight);
                    pageFore += printed(line.foreSight);
                }
                EXPECT_NEAR(pageBack, page.foot.backSights, 1e-9);
                EXPECT_NEAR(pageFore, page.foot.foreSights, 1e-9);
                EXPECT_TRUE(page.foot.hasLevels && page.foot.agrees())
                    << name << ' ' << lines << " page " << k;
                back += pageBack;
            }
            EXPECT_EQ(rows.size(), static_cast<std::size_t>(book.MSFG.Rows() - 1));
            EXPECT_EQ(std::set<int>(rows.begin(), rows.end()).size(), rows.size());
            const survey::BookSums sums = pages.sums();
            EXPECT_TRUE(sums.book.agrees());
            EXPECT_NEAR(back, sums.book.backSights + sums.repeated, 1e-9);
        }
    }
}

// What the columns do not bear out is not smoothed over.
TEST(BookPages, SayWhereSumsDiffer) {
    sheet::Book book;
    keyRows(book.MSFG, {",,,,1.5,,,,100", "00-000,,0,,,1.1,2", "CP,,,,,,1.0"}); // both I.S. and F.S.
    survey::Runs runs(book.MSFG);
    EXPECT_FALSE(BookPages(book.MSFG, runs, 40).page(0).foot.agrees());
    keyRows(book.MSFG, {"", "00-000,,0,,,,,,99"}); // levels only
    EXPECT_EQ(BookPages(book.MSFG, runs, 40).page(0).foot.sights, 0);
}

} // namespace
