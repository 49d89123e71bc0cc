#include "tools/chainage.h"

#include "error_number.h"

#include <gtest/gtest.h>

namespace {

TEST(ChainageText, MetresToKilometresAndMetres) {
    const std::pair<float, const char*> cases[] = {
        {0, "00-000"},         {5, "00-005"},         {50, "00-050"},           {250, "00-250"},
        {1250, "01-250"},      {12005, "12-005"},     {1250.5F, "01-250.5"},    {1009.5F, "01-09.5"},
        {1009, "01-009"},      {1099.5F, "01-99.5"},  {1099, "01-099"},         {1999.999F, "01-1000"},
        {0.125F, "00-000.12"}, {0.375F, "00-000.38"}, {32999.99F, "32-999.99"}, {-50, "0-1-950"},
    };
    for (const auto& [metres, text] : cases)
        EXPECT_EQ(mdlTools::ChainageText(metres), text) << metres;
    for (const float metres : {33000.0F, -33000.0F, 4e7F, 1e30F})
        EXPECT_EQ(errorOf([&] { (void)mdlTools::ChainageText(metres); }), basic::Overflow) << metres;
}

TEST(CleanChainage, DropsWhatStandsInFront) {
    const std::pair<const char*, const char*> cases[] = {{"CP", "CP"},
                                                         {"  CP ", "CP"},
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
    for (const auto& [text, clean] : cases)
        EXPECT_EQ(mdlTools::cleanChainage(text), clean) << text;
}

} // namespace
