#include "basic/runtime_error.h"
#include "tools/chainage.h"

#include <gtest/gtest.h>

namespace {

TEST(ChainageText, MetresToKilometresAndMetres) {
    const struct {
        float metres;
        const char* text;
    } cases[] = {
        {0, "00-000"},         {5, "00-005"},         {50, "00-050"},           {250, "00-250"},
        {1250, "01-250"},      {12005, "12-005"},     {1250.5F, "01-250.5"},    {1009.5F, "01-09.5"},
        {1009, "01-009"},      {1099.5F, "01-99.5"},  {1099, "01-099"},         {1999.999F, "01-1000"},
        {0.125F, "00-000.12"}, {0.375F, "00-000.38"}, {32999.99F, "32-999.99"}, {-50, "0-1-950"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(mdlTools::ChainageText(each.metres), each.text) << each.metres;
    for (const float metres : {33000.0F, -33000.0F, 4e7F, 1e30F}) {
        try {
            (void)mdlTools::ChainageText(metres);
            ADD_FAILURE() << metres;
        } catch (const basic::RuntimeError& error) {
            EXPECT_EQ(error.number(), basic::Overflow);
        }
    }
}

TEST(CleanChainage, DropsWhatStandsInFront) {
    const struct {
        const char* text;
        const char* clean;
    } cases[] = {{"CP", "CP"},
                 {"  CP ", "CP"},
                 {"", ""},
                 {"   ", ""},
                 {"A01-000", "01-000"},
                 {"CH 0-120", "0-120"},
                 {" 01-250 ", "01-250"},
                 {"abcd1", "d1"},
                 {"cp", "p"},
                 {"x", ""},
                 {"\u00fc\u00fc"
                  "01",
                  "01"}};
    for (const auto& each : cases)
        EXPECT_EQ(mdlTools::cleanChainage(each.text), each.clean) << each.text;
}

} // namespace
