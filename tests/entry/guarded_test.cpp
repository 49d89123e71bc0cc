#include "entry_fixture.h"

#include <tuple>

namespace {

// What a key costs elsewhere, told; and the same key with guarded editing. An unguarded and a guarded line
// share rows, cursor and keys.
TEST_F(Entry, KeysTellWhatTheyCostAndGuardedOnesCostNothing) {
    const char* const book4 =
        ",,,,1.5,,,101.500,100|00-000,,0,,,1.2|CP,,,,0.5,,1.0,101.000,100.500|00-010,,0,,,1.1,,,99.9";
    struct Case {
        const char* what;
        const char* rows;
        int row, col;
        std::u32string_view keys;
        const char* after;
        std::string_view told; ///< begins with it
        const char* guarded;
        std::string_view guardedTold;
        const char* cursor; ///< when guarded
    };
    const Case cases[] = {
        {"Enter on an earlier reading", book4, 2, 5, U"\n",
         ",,,,1.5,,,101.500,100|00-000,,0,,,1.2,,,-1.200|CP,,,,0.5,,1.0,101.000,100.500|00-000,,0,,,1.1,,,99."
         "9",
         "Row 4: chainage 00-010 became 00-000.",
         ",,,,1.5,,,101.500,100|00-000,,0,,,1.2,,,100.300|CP,,,,0.5,,1.0,101.000,100.500|00-010,,0,,,1.1,,,"
         "99.9",
         "", "3,5"},
        {"Enter on a back sight below which levels stand", book4, 3, 4, U"5\n",
         ",,,,1.5,,,101.500,100|00-000,,0,,,1.2|CP,,,,0.55,,1.0,-0.450,-1.000|00-000,,0,,,1.1,,,99.9",
         "Row 4: chainage 00-010 became 00-000.",
         ",,,,1.5,,,101.500,100|00-000,,0,,,1.2|CP,,,,0.55,,1.0,101.050,100.500|00-010,,0,,,1.1,,,99.9",
         "The levels from row 4 on are old", "4,4"},
        {"P on a filled row", book4, 2, 0, U"p",
         ",,,,1.5,,,101.500,100|CP|CP,,,,0.5,,1.0,101.000,100.500|00-010,,0,,,1.1,,,99.9",
         "Row 2: chainage 00-000 became CP, and 2 more.", book4, "Row 2 is filled", "2,0"},
        {"P on a row that Enter opened", "|00-000|00-010,,0", 3, 0, U"p", "|00-000|CP", "", "|00-000|CP", "",
         "3,6"},
        {"S on a filled cell", "||1|2,,,,,7", 4, 0, U"s", "||1|1,,,,,7", "Row 4: chainage 2 became 1.",
         "||1|2,,,,,7", "Row 4 is filled", "4,0"},
        {"T on a remark", "|,,,,,,,,,bridge", 2, 0, U"t", "|,,,,,,,,,TBM", "Row 2: remark bridge became TBM.",
         "|,,,,,,,,,bridge", "Row 2 is filled", "2,0"},
        {"a paste clears its neighbours", "|1,2,3|4,5,6|7,8,9", 2, 0, U"\x16", "|1a,b|c,d|,8,9",
         "Row 3: chainage 4 became c, and 3 more.", "|a,b,3|c,d,6|7,8,9", "Row 3: chainage 4 became c, and 1",
         "3,1"},
        {"+ over a selection", "|,,,,,1|,,,,,2|,,,,,3", 3, 5, U"+", "|,,,,,1.5|,,,,,2.5|,,,,,3",
         "Row 2: I.S. 1 became 1.5.", "|,,,,,1.5|,,,,,2.5|,,,,,3", "Row 2: I.S.", "3,5"},
        {"a comma", "|1", 2, 0, U",5", "|15", "", "|1.5", "", "2,0"},
    };
    for (const Case& each : cases) {
        for (const bool guarded : {false, true}) {
            SCOPED_TRACE(std::string(each.what) + (guarded ? ", guarded" : ""));
            start(each.rows, each.row, each.col);
            desktop.statuses.clear();
            if (each.keys == U"+") grid.setSelection(2, 5);
            desktop.inputs = {"0.5"};
            desktop.clipboard = "a\tb\t\rc\td\t\r";
            book.Guarded = guarded;
            type(each.keys);
            const std::string_view told = guarded ? each.guardedTold : each.told;
            EXPECT_EQ(rows(), guarded ? each.guarded : each.after);
            const std::string notice = book.notices.takeLine().text;
            const std::string said =
                notice.empty() && !desktop.statuses.empty() ? desktop.statuses.back() : notice;
            EXPECT_EQ(said.substr(0, told.size()), told);
            if (guarded) {
                EXPECT_EQ(std::to_string(grid.Row()) + "," + std::to_string(grid.Col()), each.cursor);
            }
        }
    }
}

} // namespace
