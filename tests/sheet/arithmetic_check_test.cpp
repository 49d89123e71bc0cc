#include "sheet/arithmetic_check.h"

#include "field_book.h"

#include <gtest/gtest.h>

#include <array>

namespace {

TEST(ArithmeticCheck, ClosesOnWhatWasSighted) {
    const std::array<const char*, 3> cases[] = {
        {"closed on a change point",
         ",,,,1.500,,,,100.000|,,,,,0.750,,,100.750|,,,,1.000,,2.000,,99.500|,,,,,,0.500,,100.000",
         "Sum B.S. 2.500, sum F.S. 2.500, first level 100.000, last level 100.000: they agree."},
        {"ends on an intermediate sight",
         ",,,,1.500,,,,100.000|,,,,1.000,,2.000,,99.500|,,,,,0.250,,,100.250",
         "Sum B.S. 2.500, sum F.S. 2.250, first level 100.000, last level 100.250: they agree."},
        {"a back sight that nothing was sighted from", ",,,,1.500,,,,100.000|,,,,9.000,,2.000,,99.500|",
         "Sum B.S. 1.500, sum F.S. 2.000, first level 100.000, last level 99.500: they agree."},
        {"a level that was typed over", ",,,,1.500,,,,100.000|,,,,,,2.000,,99.520",
         "Sum B.S. 1.500, sum F.S. 2.000, first level 100.000, last level 99.520: they differ by -0.020."},
        {"not reduced", ",,,,1.500,,,,100.000|,,,,,,2.000", ""},
    };
    for (const auto& [what, rows, line] : cases) {
        sheet::Book book;
        keyRows(book.MSFG, splitAt(rows, '|'));
        EXPECT_EQ(describe(checkArithmetic(book.MSFG)), line) << what;
    }
}

} // namespace
