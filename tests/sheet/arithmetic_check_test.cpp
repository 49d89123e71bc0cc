#include "sheet/arithmetic_check.h"

#include "field_book.h"
#include "sheet/reduction.h"

#include <gtest/gtest.h>

#include <array>

namespace {

TEST(ArithmeticCheck, ClosesOnWhatWasSighted) {
    const std::array<const char*, 3> cases[] = {
        {"closed on a change point",
         ",,,,1.500,,,,100.000|,,,,,0.750,,,100.750|,,,,1.000,,2.000,,99.500|,,,,,,0.500,,100.000",
         "Sums agree: B.S. 2.500 - F.S. 2.500 = 0.000, level 100.000 to 100.000."},
        {"ends on an intermediate sight",
         ",,,,1.500,,,,100.000|,,,,1.000,,2.000,,99.500|,,,,,0.250,,,100.250",
         "Sums agree: B.S. 2.500 - F.S. 2.000 - closing I.S. 0.250 of row 3 = 0.250, level 100.000 to "
         "100.250."},
        {"a back sight that nothing was sighted from", ",,,,1.500,,,,100.000|,,,,9.000,,2.000,,99.500|",
         "Sums agree: B.S. 1.500 - F.S. 2.000 = -0.500, level 100.000 to 99.500. B.S. 9.000 of row 2 is left "
         "out: nothing is sighted from it."},
        {"a level that was typed over", ",,,,1.500,,,,100.000|,,,,,,2.000,,99.520",
         "SUMS DIFFER by 0.020: B.S. 1.500 - F.S. 2.000 = -0.500, level 100.000 to 99.520."},
        {"an F.S. beside the I.S. that the reduction takes",
         ",,,,1.500,,,,100.000|,,,,1.000,1.100,2.000,,100.400|,,,,,,1.500,,100.000",
         "SUMS DIFFER by 1.000: B.S. 2.500 - F.S. 3.500 = -1.000, level 100.000 to 100.000."},
        {"not reduced", ",,,,1.500,,,,100.000|,,,,,,2.000", ""},
    };
    for (const auto& [what, rows, line] : cases) {
        sheet::Book book;
        keyRows(book.MSFG, splitAt(rows, '|'));
        EXPECT_EQ(describe(checkArithmetic(book.MSFG)), line) << what;
    }
}

// Singles at 2,500 m are 0.24 mm apart: a long clean book must not be told that it differs.
TEST(ArithmeticCheck, AllowsWhatSinglePrecisionAddsUpTo) {
    for (const bool blunder : {false, true}) {
        sheet::Book book;
        book.MSFG.setRows(152);
        book.MSFG.setText(1, sheet::RLevel, "2500.127");
        book.MSFG.setText(1, sheet::BackSight, "1.237");
        for (int row = 2; row < 152; ++row) {
            book.MSFG.setText(row, sheet::ForeSight, "1.113");
            book.MSFG.setText(row, sheet::BackSight, "1.237");
        }
        (void)sheet::reduce(book.MSFG);
        if (blunder) book.MSFG.setText(75, sheet::ForeSight, "1.131");
        EXPECT_EQ(checkArithmetic(book.MSFG).agrees(), !blunder);
    }
}

} // namespace
