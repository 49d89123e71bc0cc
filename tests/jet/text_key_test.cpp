#include "sort_tables.h"
#include "text_key.h"

#include "hex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes general(std::u16string_view text, bool ascending = true) {
    Bytes key;
    jet::appendGeneralTextKey(text, ascending, key);
    return key;
}

std::string jet3(std::string_view text, bool ascending = true) {
    Bytes key;
    jet::appendJet3TextKey(text, ascending, key);
    return hex(key);
}

// Keys read from the indexes of files that Access made.
TEST(TextKey, GeneralOrderAsStoredByAccess) {
    struct Case {
        std::u16string text;
        bool ascending;
        std::string key;
    };
    const std::vector<Case> cases = {
        {u"01-250", true, "36 38 3a 40 36 01 01 01 01 80 0f 06 82 00"},
        {u"01-250", false, "c9 c7 c5 bf c9 fe fe fe fe 7f f0 f9 7d ff 00"},
        {u"L", true, "5e 01 00"},
        {u"L", false, "a1 fe ff 00"},
        {u"", true, "01 00"},
        {u"M\u00E9xico D.F.", true, "60 51 75 59 4d 64 07 4f 1c 53 1c 01 02 0e 00"},
        {u"Tradi\u00E7\u00E3o Hipermercados", true,
         "6d 69 4a 4f 59 4d 4a 64 07 57 59 66 51 69 60 51 69 4d 4a 4f 64 6b 01 02 02 02 02 02 1c 19 00"},
        {u"Save-a-lot Markets", true,
         "6b 4a 71 51 4a 5e 64 6d 07 60 4a 69 5c 51 6d 6b 01 01 01 01 80 17 06 82 80 1b 06 82 00"},
        {u"HILARI\u00D3N-Abastos", true,
         "57 59 5e 4a 69 59 64 62 4a 4c 4a 6b 6d 64 6b 01 02 02 02 02 02 02 0e 01 01 01 80 27 06 82 00"},
        {u"Gustaf's Kn\u00E4ckebr\u00F6d", true,
         "55 6f 6b 6d 4a 53 6b 07 5c 62 4a 4d 5c 51 4c 69 64 4f 01 02 02 02 02 02 02 02 02 02 02 13 02 02 02 "
         "02 02 13 01 01 01 80 1f 06 80 00"},
        {u"NuNuCa Nu\u00DF-Nougat-Creme", true,
         "62 6f 62 6f 4d 4a 07 62 6f 6b 6b 62 64 6f 55 4a 6d 4d 69 51 60 51 01 01 01 01 80 33 06 82 80 4b 06 "
         "82 "
         "00"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(hex(general(c.text, c.ascending)), withoutBlanks(c.key));
}

TEST(TextKey, Jet3OrderAsStoredByAccess) {
    struct Case {
        std::string text;
        bool ascending;
        std::string key;
    };
    const std::vector<Case> cases = {
        {"01-250", true, "56 57 1e 58 5b 56 00"},
        {"01-250", false, "a9 a8 e1 a7 a4 a9 ff"},
        {"L", true, "6d 00"},
        {"M\xE9xico D.F.", true, "6f 66 7c 6a 62 72 11 64 1f 67 1f 04 00"},
        {"Montr\xE9"
         "al",
         true, "6f 72 70 77 75 66 60 6d 02 24 00"},
        {"Tradi\xE7\xE3o Hipermercados", true,
         "77 75 60 64 6a 62 60 72 11 69 6a 73 66 75 6f 66 75 62 60 64 72 76 02 29 70"},
        {"K\xF8"
         "benhavn",
         true, "6c 81 61 66 70 69 60 7a 70 00"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(jet3(c.text, c.ascending), withoutBlanks(c.key)) << c.text;
}

TEST(TextKey, CaseTrailingBlanksAndTheRestOfLongTextsDoNotCount) {
    EXPECT_EQ(general(u"Road 7  "), general(u"rOAD 7"));
    EXPECT_EQ(jet3("Road 7  "), jet3("rOAD 7"));
    EXPECT_NE(general(u"Road  7"), general(u"Road 7"));
    const std::u16string full(255, u'k');
    EXPECT_EQ(general(full + u"x"), general(full));
    EXPECT_NE(general(full.substr(1) + u"x"), general(full));
}

TEST(TextKey, HyphenMovesNothingButTheTie) {
    EXPECT_LT(general(u"coop"), general(u"co-op"));
    EXPECT_LT(general(u"co-op"), general(u"coops"));
    EXPECT_GT(general(u"coop", false), general(u"co-op", false));
    EXPECT_GT(general(u"co-op", false), general(u"coops", false));
}

// Every part of a general key: codes, a combining mark on a weight and one in front, surrogates, small kana.
TEST(TextKey, MarksSurrogatesAndKana) {
    const auto mark = jet::SortTable::general()[0x0301];
    ASSERT_EQ(mark.kind, 'm');
    const auto marked = static_cast<std::uint8_t>(2 + mark.second[0]);
    EXPECT_EQ(general(u"la\u0301"), (Bytes{0x5E, 0x4A, 1, 2, marked, 0}));
    EXPECT_EQ(general(u"\u0301l\u00E9"), (Bytes{0x5E, 0x51, 1, mark.second[0], 2, 0x0E, 0}));
    EXPECT_EQ(general(u"\U0001F600"), (Bytes{0xB0, 0x3F, 0xB6, 0xFC, 1, 0x3F, 0x3F, 0}));
    EXPECT_EQ(general(u"\u3041\u3042"),
              (Bytes{0x7F, 2, 0x7F, 2, 1, 1, 1, 0xA0, 0xFF, 2, 0x80, 0xFF, 0x80, 0}));
    EXPECT_EQ(general(u"\u3041-"),
              (Bytes{0x7F, 2, 1, 1, 1, 0xA0, 0xFF, 2, 0x80, 0xFF, 0x80, 0xFF, 1, 0x80, 0x0B, 6, 0x82, 0}));
}

// A counting run whose second byte passes FF goes on at 02 under the next first byte.
TEST(TextKey, TablesCoverEveryCharacter) {
    const auto& general = jet::SortTable::general();
    std::size_t computed = 0;
    for (std::size_t unit = 0; unit < 0x10000; ++unit)
        computed += general[unit].kind == 'n';
    EXPECT_EQ(computed, 0x800U);
    for (std::size_t unit = 0x4E01; unit < 0x9FA5; ++unit) {
        const auto before = general[unit - 1];
        const auto here = general[unit];
        if (before.kind != 'r' || here.kind != 'r') continue;
        EXPECT_TRUE(std::ranges::lexicographical_compare(before.codeBytes(), here.codeBytes())) << unit;
        EXPECT_GE(here.code[1], 2) << unit;
    }
    for (std::size_t byte = 0; byte < 0x100; ++byte)
        EXPECT_GT(jet::SortTable::jet3()[byte].codeLength, 0) << byte;
}

} // namespace
