#include "survey/findings.h"

#include "basic/numbers.h"
#include "field_book.h"
#include "sheet/cells.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <set>

namespace {

using namespace survey;
using testing::ElementsAre;
using testing::IsEmpty;

/// A book with its findings, followed as a window does.
struct Checked {
    sheet::Book book;
    sheet::Grid& grid = book.MSFG;
    Runs runs{grid};
    Findings findings;

    explicit Checked(const std::vector<std::string>& rows = {},
                     Findings::Cursor cursor = Findings::Cursor::Ignore)
        : findings(grid, runs, cursor) {
        sheet::writeHeader(grid);
        if (!rows.empty()) keyRows(grid, rows);
        grid.addListener(runs);
        grid.addListener(findings);
    }
    /// "row rule" of each, "not closed" apart.
    std::vector<std::string> list() {
        std::vector<std::string> all;
        for (const Finding& each : findings.all())
            if (each.rule != FindingRule::NotClosed)
                all.push_back(std::to_string(each.row) + ' ' + word(each.rule));
        return all;
    }
};

std::string textOf(const std::vector<Finding>& findings) {
    std::string all;
    for (const Finding& each : findings)
        all += std::to_string(each.row) + ' ' + word(each.kind) + ' ' + word(each.rule) + ' ' + each.text +
               ' ' + std::to_string(each.mark) + '\n';
    return all;
}

std::string reading(double metres) {
    return basic::format(metres, basic::pattern("0.000"));
}

/// The road of 42 sections with the staff readings that its levels give: a set-up every seven sections.
std::vector<std::string> keyedRoad() {
    std::vector<std::string> rows;
    double height = 13.1;
    double level = 0;
    std::vector<std::vector<std::string>> points = bookRows("tramo1-xsec");
    points.erase(points.begin(), points.begin() + 2);
    std::ranges::stable_sort(points, {}, [](const auto& cells) { return cells[0]; });
    rows.emplace_back(",,,,1.1,,,13.100,12.000,BM = 12.000");
    int sections = 0;
    for (const auto& cells : points) {
        level = basic::val(cells[8]);
        if (!cells[1].empty() && ++sections % 7 == 0) {
            const double turn = level + 0.137;
            const double next = turn + 1.4 + 0.05 * (sections % 5);
            rows.push_back("CP,,,," + reading(next - turn) + ",," + reading(height - turn) + ",,,");
            height = next;
        }
        rows.push_back(cells[0] + ',' + cells[1] + ',' + cells[2] + ',' + cells[3] + ",," +
                       reading(height - level) + ",,,,");
    }
    rows.push_back("CP,,,,,,1.200,,,BM2 = " + reading(height - 1.2));
    return rows;
}

TEST(Findings, RealBooksAreQuiet) {
    for (const char* name : {"fleming-tbm-loop", "ge120-loop", "geocalc-abcg", "gsi-pv16", "nptel-ex14-1",
                             "sprinter-211264", "tramo1-derived", "tramo1-xsec", "wheatley-xsec"}) {
        Checked book;
        loadBook(book.book, name);
        const auto& all = book.findings.all();
        const auto hints = std::ranges::count_if(all, [](const Finding& each) {
            return each.kind == FindingKind::Hint && each.rule != FindingRule::NotClosed;
        });
        EXPECT_LE(hints, std::max(1, book.grid.Rows() / 100)) << name;
        EXPECT_FALSE(
            std::ranges::any_of(all, [](const Finding& each) { return each.kind == FindingKind::Error; }))
            << name << testing::PrintToString(book.list());
    }
    EXPECT_EQ(textOf(Checked(keyedRoad()).findings.all()), "");
}

TEST(Findings, EachRule) {
    const std::vector<std::string> base{
        ",,,,1.5,,,101.5,100,", "00-000,,0,,,1.500,,,,", "00-000,2,,,,1.6,,,,", "00-010,,0,,,1.5,,,,",
        "00-010,2,,,,1.6,,,,",  "CP,,,,1.4,,1.5,,,",     "00-020,,0,,,1.4,,,,", "00-020,2,,,,1.5,,,,",
        "00-030,,0,,,1.4,,,,",  "00-030,2,,,,1.5,,,,"};
    const auto with = [&](int row, const char* cells) {
        std::vector<std::string> rows = base;
        if (row > static_cast<int>(rows.size()))
            rows.emplace_back(cells);
        else
            rows[static_cast<std::size_t>(row) - 1] = cells;
        return Checked(rows).list();
    };
    const struct {
        int row;
        const char* cells;
        std::vector<std::string> found;
    } cases[] = {
        {1, ",,,,1.5,,,101.5,100,", {}},
        {1, ",,,,,,,101.5,100,", {"1 no-back-sight"}},
        {3, "00-000,,0,,,1.6,,,,", {"3 same-point"}},
        {3, "0+000,,0,,,1.6,,,,", {"3 same-point"}},
        {3, "00-000,,,,,1.6,,,,", {"3 same-point"}}, // no offset is that of the row before
        {5, "00-005,2,,,,1.6,,,,", {"5 chainage-back", "5 no-centre"}},
        {9, "00-060,,0,,,1.4,,,,", {"9 chainage-gap", "10 chainage-back", "10 no-centre"}},
        {2, "00-000,1,,,,1.5,,,,", {"2 no-centre"}},
        {6, "CP,,,,,,1.5,,,", {"6 no-back-sight"}},
        {6, "CP,,,,1.4,,,,,", {"6 no-fore-sight"}},
        {6, "CP,,,,1.4,1.5,,,,", {"6 no-fore-sight"}},
        {6, "CP,,,,1.4,,1.5 m,,,", {"6 not-a-number"}},
        {5, "00-010,2,,,,1.6,1.7,,,", {"5 two-sights"}},
        {5, "00-010,2,,,,1.x,,,,", {"5 not-a-number"}},
        {5, "00-010,2,,,,-0.2,,,,", {"5 below-zero"}},
        {8, "00-020,2,,,,5.2,,,,", {"8 above-staff", "8 jump-across"}},
        {8, "00-020,2,,,,1.5,,,101.0,", {"8 old-level"}},
        {8, "00-020,2,,,,1.5,,,,A = 101.2 m", {"8 known-unread"}},
        {8, "00-020,2,,,,1.5,,,,A = 100.001", {"8 bench-mark-is-ground"}},
        {1, ",,0,,1.5,,,101.5,100,A = 100", {}}, // as a file gives a row without an offset back
        {6, "CP,,,,1.4,,1.5,,,A = 95", {"6 known-far", "6 does-not-close"}},
        {8, "00-020,,,,,,,,,", {"8 spare-row"}},
        {11, "00-040,,,,,,,,,", {"11 spare-row"}},
        {11, ",,,,,,,,,", {}},
    };
    for (const auto& [row, cells, found] : cases)
        EXPECT_EQ(with(row, cells), found) << row << ' ' << cells;
    EXPECT_EQ(Checked({",,,,1,,,,100,A", "CP,,,,1,,1,,,A=100.1", "CP,,,,,,1,,,B=100.1"}).list(),
              (std::vector<std::string>{"2 known-contradiction", "3 does-not-close"}));
    // Offsets outwards, and a table from left to right; not the one that turns back.
    const auto order = [](std::vector<const char*> offsets) {
        std::vector<std::string> rows{",,,,1,,,,100,"};
        for (const char* offset : offsets)
            rows.push_back(std::string("00-000,") + offset + ",,1.1,,,,");
        return Checked(rows).list();
    };
    EXPECT_THAT(order({",0,", "2,,", "4,,", ",,2", ",,4"}), IsEmpty());
    EXPECT_THAT(order({"4,,", "2,,", ",0,", ",,2", ",,4"}), IsEmpty());
    EXPECT_THAT(order({",0,", "4,,", "2,,", ",,2"}), ElementsAre("4 offset-order"));
}

// One mistake at a time in the road, at random places: it is found, and nothing else is.
TEST(Findings, PlantedMistakes) {
    const std::vector<std::string> road = keyedRoad();
    std::mt19937 random(11);
    const auto pick = [&](int least, int most) { return std::uniform_int_distribution(least, most)(random); };
    enum Mistake { Metre, Decimetre, Swapped, Repeated, Centre, Fore, count };
    std::array<int, count> planted{};
    std::array<int, count> seen{};
    int elsewhere = 0;
    for (int k = 0; k < 200; ++k) {
        const auto mistake = static_cast<Mistake>(k % count);
        Checked book(road);
        sheet::Grid& grid = book.grid;
        const auto isRow = [&](int row) {
            const bool turns = grid.Text(row, sheet::Chainage) == "CP";
            if (mistake == Fore) return turns && row + 1 < grid.Rows();
            return !turns && (mistake != Centre || !grid.Text(row, sheet::Center).empty());
        };
        int row = pick(2, grid.Rows() - 1);
        while (!isRow(row))
            row = pick(2, grid.Rows() - 1);
        std::string sight = grid.Text(row, sheet::InterSight);
        int expected = row;
        switch (mistake) {
        case Metre:
        case Decimetre: {
            const double wrong = (mistake == Metre ? 1 : 0.1) * (pick(0, 1) == 0 ? 1 : -1) * pick(1, 2);
            grid.setText(row, sheet::InterSight, reading(basic::val(sight) + wrong));
            break;
        }
        case Swapped:
            std::swap(sight[2], sight[3]);
            grid.setText(row, sheet::InterSight, sight);
            break;
        case Repeated:
            grid.insertRows(row + 1, 1, sheet::Marks::Stay);
            for (int col = 0; col < grid.Cols(); ++col)
                grid.setText(row + 1, col, grid.Text(row, col));
            expected = row + 1;
            break;
        case Centre:
            grid.removeRows(row, 1, sheet::Marks::Stay);
            expected = row - 1; // the section's first row is its left one
            break;
        case Fore:
            grid.setText(row, sheet::ForeSight, "");
            break;
        case count:
            break;
        }
        ++planted[mistake];
        bool hit = false;
        for (const Finding& each : book.findings.all()) {
            // What a missing reading does to the closing is no finding of another kind.
            if (each.rule == FindingRule::DoesNotClose) continue;
            const bool here = std::abs(each.row - expected) <= (mistake <= Swapped ? 0 : 1);
            hit = hit || here;
            elsewhere += here ? 0 : 1;
            if (!here)
                ADD_FAILURE() << k << " planted in row " << row << ": " << each.row << ' ' << each.text;
        }
        seen[mistake] += hit ? 1 : 0;
    }
    EXPECT_EQ(elsewhere, 0);
    for (const Mistake structural : {Repeated, Centre, Fore})
        EXPECT_EQ(seen[structural], planted[structural]);
    EXPECT_GE(seen[Metre] * 100, planted[Metre] * 95);
}

// Random keys, rows that come and go: the list that was followed equals the one made from nothing.
TEST(Findings, FollowedEqualsMadeFromNothing) {
    const std::vector<std::string> road = keyedRoad();
    std::mt19937 random(5);
    const auto pick = [&](int least, int most) { return std::uniform_int_distribution(least, most)(random); };
    const std::vector<std::string> chainages{"", "CP", "00-020", "00-100", "00-105", "00-900", "x"};
    const std::vector<std::string> sights{"", "1.5", "2.51", "y", "-1", "0.3"};
    for (int session = 0; session < 25; ++session) {
        const auto cursor = session % 2 == 0 ? Findings::Cursor::Follow : Findings::Cursor::Ignore;
        const int first =
            session % 2 == 0 ? 2 : 1; // the cursor comes back to row 1, which is not judged there
        Checked book(road, cursor);
        sheet::Grid& grid = book.grid;
        for (int step = 0; step < 80; ++step) {
            const int row = pick(first, grid.Rows() - 1);
            grid.moveTo(row, 0);
            switch (pick(0, 9)) {
            case 0:
                grid.insertRows(row, pick(1, 3), sheet::Marks::Stay);
                break;
            case 1:
                if (row + 3 < grid.Rows()) grid.removeRows(row, pick(1, 3), sheet::Marks::Stay);
                break;
            case 2:
                grid.setRows(grid.Rows() + 1);
                break;
            case 3:
            case 4:
                grid.setText(row, sheet::Chainage, chainages[std::size_t(pick(0, 6))]);
                break;
            case 5:
                grid.setText(row, pick(1, 3), pick(0, 1) == 0 ? "" : "3.15");
                break;
            case 6:
                grid.setText(row, sheet::Remark, pick(0, 1) == 0 ? "A = 12" : "");
                break;
            default:
                grid.setText(row, pick(4, 6), sights[std::size_t(pick(0, 5))]);
            }
            if (pick(0, 2) != 0) continue;
            EXPECT_TRUE(pick(0, 1) == 0 || book.findings.version() > 0); // in step before the cursor leaves
            grid.moveTo(1, 0);
            Runs runs(grid);
            Findings anew(grid, runs, cursor);
            ASSERT_EQ(textOf(book.findings.all()), textOf(anew.all())) << session << ' ' << step;
        }
    }
}

TEST(Findings, ARowIsNotJudgedWhileItIsKeyed) {
    Checked book({",,,,1.5,,,,100,", "00-000,,0,,,1.5,,,,", ",,,,,,,,,"}, Findings::Cursor::Follow);
    book.grid.moveTo(3, sheet::Chainage);
    EXPECT_THAT(book.list(), IsEmpty());
    book.grid.setText(3, sheet::Chainage, "00-000");
    book.grid.setText(3, sheet::Center, "0");
    book.grid.setText(3, sheet::InterSight, "1.5");
    EXPECT_THAT(book.list(), IsEmpty());
    const std::uint64_t version = book.findings.version();
    book.grid.setRows(5);
    book.grid.moveTo(4, sheet::InterSight);
    EXPECT_THAT(book.list(), ElementsAre("3 same-point"));
    EXPECT_NE(book.findings.version(), version);
    // Its mark holds wherever its rows stand, and until a cell of theirs changes.
    const std::uint64_t mark = book.findings.all().front().mark;
    book.grid.insertRows(2, 1, sheet::Marks::Stay);
    EXPECT_EQ(book.findings.all().front().mark, mark);
    book.grid.setText(3, sheet::InterSight, "1.6");
    EXPECT_NE(book.findings.all().front().mark, mark);
}

} // namespace
