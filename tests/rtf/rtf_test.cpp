#include "rtf/document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <random>

namespace {

using rtf::Alignment;
using testing::ElementsAre;

std::string textOf(std::string_view body) {
    return rtf::plainText(rtf::read("{\\rtf1\\ansi " + std::string(body) + "}"));
}

rtf::Paragraph paragraph(std::string_view body, std::size_t number = 0) {
    const rtf::Document document = rtf::read("{\\rtf1\\ansi " + std::string(body) + "}");
    std::size_t seen = 0;
    for (const rtf::Block& block : document.blocks)
        if (const auto* found = std::get_if<rtf::Paragraph>(&block); found != nullptr && seen++ == number)
            return *found;
    ADD_FAILURE() << "no paragraph " << number;
    return {};
}

// What it is, the source and its text.
const std::array<const char*, 3> texts[] = {
    {"line ends of the source are no text", "one\r\n two\n\\par three", "one two\nthree\n"},
    {"escaped line end is a paragraph", "one\\\ntwo", "one\ntwo\n"},
    {"escaped signs", "a\\{b\\}c\\\\d", "a{b}c\\d\n"},
    {"one blank ends a word, the next is text", "\\b  bold\\b0", " bold\n"},
    {"words without a blank", "\\b1bold\\b0\\i-3x", "boldx\n"},
    {"of unknown words the optional groups are left out whole",
     "\\frobnicate12 a\\zz-1 b{\\*\\frob x{\\b y}}{\\frob c}{\\*\\b d}", "abcd\n"},
    {"pictures", "a{\\pict\\pngblip 89504e47}b{\\*\\shppict{\\pict 00ff}}c", "abc\n"},
    {"binary data is no rich text", "a{\\pict\\bin6 }}{{\\\\}b\\bin3 }}}c", "abc\n"},
    {"tables of the header",
     "{\\fonttbl{\\f0\\froman A;}}{\\colortbl;\\red1\\green2\\blue3;}{\\stylesheet{\\s0 N;}}"
     "{\\info{\\author X}}a",
     "a\n"},
    {"headers, footers and notes", "{\\header h}a{\\footer f}{\\footnote n}b", "ab\n"},
    {"hidden text", "a{\\v b}c\\v d\\v0 e", "ace\n"},
    {"special signs", "\\lquote a\\rquote\\~b\\_c\\endash\\emdash\\bullet\\ldblquote\\rdblquote",
     "‘a’\u00A0b\u2011c–—•“”\n"},
    {"tab and line", "a\\tab b\\line c", "a\tb\u2028c\n"},
    {"list texts", "{\\listtext\\tab 1.\\tab}first\\par{\\pntext \\'b7\\tab}second",
     "\t1.\tfirst\n·\tsecond\n"},
    {"fields show their result", "{\\field{\\*\\fldinst PAGE}{\\fldrslt 7}}", "7\n"},
    {"text of objects", "{\\object\\objemb{\\*\\objclass W}{\\*\\objdata 0105}{\\result shown}}", "shown\n"},
    {"nothing behind the last brace", "a}b{c", "a\n"},
    {"Western bytes, one that the page lacks, no hexadecimal", "caf\\'e9 \\'80 \\'93x\\'94 \\'81\\'zz",
     "café € “x” \uFFFDzz\n"},
    {"Cyrillic page of the document", "\\ansicpg1251 \\'cf\\'f0\\'e8\\'e2\\'e5\\'f2", "Привет\n"},
    {"Greek font", "{\\fonttbl{\\f0\\fcharset161 G;}}\\f0 \\'c1\\'c2\\'c3", "ΑΒΓ\n"},
    {"Japanese font, a byte as text", "{\\fonttbl{\\f0\\fcharset128 J;}}\\f0 \\'93\\'fa\\'96{\\f0 }",
     "日\uFFFD\n"},
    {"Japanese second byte as text", "{\\fonttbl{\\f0\\fcharset128 J;}}\\f0 \\'83e\\'83X", "テス\n"},
    {"Macintosh", "\\mac caf\\'8e", "café\n"},
    {"page of a DOS file", "\\pc caf\\'82", "café\n"},
    {"bullet of the symbol font", "{\\fonttbl{\\f3\\fcharset2 Symbol;}}{\\f3\\'b7}\\u-3913 ?", "••\n"},

    {"Unicode with a fallback", "x\\u8211-y", "x–y\n"},
    {"fallback of two bytes", "\\uc2 x\\u960\\'a3\\'a4y", "xπy\n"},
    {"fallback counts within its group", "{\\uc0 \\u960 a}\\u960 ab", "πaπb\n"},
    {"fallback ends with the group", "{\\u960}ab", "πab\n"},
    {"a word is no fallback", "\\u960\\par a", "π\na\n"},
    {"negative numbers, two halves of one character, a half alone",
     "\\u-30000 ?\\u-10180 ?\\u-8704 ?a\\u-8704 ?", "\u8AD0\U0001F200a\uFFFD\n"},
    {"a cell without a row", "\\pard\\intbl a\\cell b\\par", "a\tb\n"},
    {"a row without an end", "\\pard\\intbl a\\cell\\pard b", "a\nb\n"},
    {"a row without a cell", "\\trowd\\cellx9\\row x", "x\n"},
    {"nested cells", "\\pard\\intbl a\\nestcell b\\nestcell\\nestrow\\cell\\row", "a\tb\t\n"},
};

TEST(Rtf, ReadsTexts) {
    for (const auto& [what, source, text] : texts)
        EXPECT_EQ(textOf(source), text) << what;
}

TEST(Rtf, CharacterFormatsFollowGroups) {
    const std::vector<rtf::Run> runs =
        paragraph("{\\fonttbl{\\f5\\fmodern Courier New{\\*\\falt X};}{\\f2\\fswiss Arial;}}"
                  "{\\colortbl;\\red255\\green0\\blue10;}\\f2\\fs20 a{\\b\\i\\f5 b{\\ul\\cf1\\fs48 c}d}"
                  "{\\highlight1\\super e}\\plain f\\strike g")
            .runs;
    std::string all;
    std::vector<rtf::CharacterFormat> formats;
    for (const rtf::Run& run : runs) {
        all += run.text;
        formats.push_back(run.format);
    }
    ASSERT_EQ(all, "abcdefg");
    ASSERT_EQ(formats.size(), 7U);
    EXPECT_THAT(std::vector({formats[0].halfPoints, formats[2].halfPoints, formats[5].halfPoints}),
                ElementsAre(20, 48, 24));
    EXPECT_THAT(std::vector({formats[0].font, formats[1].font}), ElementsAre(1, 0));
    EXPECT_TRUE(formats[1].bold && formats[1].italic && !formats[1].underline);
    EXPECT_TRUE(formats[2].bold && formats[2].underline && !formats[4].bold && formats[6].strike);
    EXPECT_EQ(formats[3], formats[1]);
    EXPECT_EQ(formats[2].text, (rtf::Colour{255, 0, 10}));
    EXPECT_EQ(formats[4].background, formats[2].text);
    EXPECT_EQ(formats[4].script, rtf::Script::Super);
}

TEST(Rtf, FontsKeepNameAndKind) {
    const rtf::Document read =
        rtf::read("{\\rtf1{\\fonttbl{\\f0\\froman\\fcharset204{\\*\\panose 02020603}Times New Roman;}"
                  "{\\f1\\fmodern Courier;}\\f7\\fnil Plain;}x}");
    ASSERT_EQ(read.fonts.size(), 3U);
    EXPECT_EQ(read.fonts[0].name + "," + read.fonts[2].name, "Times New Roman,Plain");
    EXPECT_EQ(read.fonts[0].family, rtf::Family::Serif);
    EXPECT_EQ(read.fonts[1].family, rtf::Family::Mono);
}

TEST(Rtf, ParagraphFormatsLastUntilPard) {
    const char* source =
        "\\pard\\qc\\li360\\fi-360\\sb120\\sa240\\tx720\\tx1440\\outlinelevel1 a\\par b\\par\\pard\\qj c";
    const rtf::ParagraphFormat first = paragraph(source, 0).format;
    EXPECT_EQ(first.alignment, Alignment::Center);
    EXPECT_THAT(std::vector({first.left, first.first, first.before, first.after, first.outline}),
                ElementsAre(360, -360, 120, 240, 1));
    EXPECT_THAT(first.tabs, ElementsAre(720, 1440));
    EXPECT_EQ(paragraph(source, 1).format, first);
    EXPECT_EQ(paragraph(source, 2).format.alignment, Alignment::Justify);
    EXPECT_EQ(paragraph(source, 2).format.left, 0);
}

TEST(Rtf, LinksNameTheirTarget) {
    const rtf::Paragraph web =
        paragraph("{\\field{\\*\\fldinst{HYPERLINK \"https://a.example/b\"}}{\\fldrslt{\\ul here}}}x");
    ASSERT_EQ(web.runs.size(), 2U);
    EXPECT_EQ(web.runs[0].format.link, "https://a.example/b");
    EXPECT_EQ(web.runs[1].format.link, "");
    const rtf::Paragraph inside =
        paragraph("{\\field{\\*\\fldinst HYPERLINK \\\\l \"keys\"}{\\fldrslt there}}");
    EXPECT_EQ(inside.runs[0].format.link, "#keys");
}

TEST(Rtf, TablesKeepRowsAndCells) {
    const rtf::Document read = rtf::read(
        "{\\rtf1 before\\par{\\trowd\\cellx1000\\cellx3000\\intbl{{\\pard\\intbl "
        "a\\par}\\cell}{{\\pard\\intbl b1\\par"
        "\\pard\\intbl b2\\par}\\cell}\\row}\\trowd\\cellx1000\\pard\\intbl c\\cell\\row\\pard after}");
    EXPECT_EQ(rtf::plainText(read), "before\na\tb1 b2\nc\nafter\n");
    ASSERT_EQ(read.blocks.size(), 3U);
    const auto& rows = std::get<rtf::Table>(read.blocks[1]).rows;
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].cells[1].size(), 2U);
    EXPECT_THAT(rows[0].edges, ElementsAre(1000, 3000));
}

TEST(Rtf, OtherFilesAreShownAsTheyAre) {
    const std::pair<const char*, const char*> files[] = {
        {"plain\r\ntext \\b caf\xC3\xA9", "plain\ntext \\b café\n"},
        {"caf\xE9", "café\n"},
        {"", ""},
        {"\xEF\xBB\xBF \r\n{\\rtf1 a}", "a\n"}};
    for (const auto& [bytes, text] : files)
        EXPECT_EQ(rtf::plainText(rtf::read(bytes)), text);
}

constexpr std::string_view everything =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\froman\\fcharset128 T;}{\\f1\\fmodern "
    "C;}}{\\colortbl;\\red9\\green9"
    "\\blue9;}{\\*\\generator g;}\\uc1 a\\u8211-\\'e9{\\b b\\par}{\\pict\\bin4 "
    "}}}}c}\\trowd\\cellx99\\pard\\intbl x\\cell\\row"
    "{\\field{\\*\\fldinst HYPERLINK \"q\"}{\\fldrslt r}}\\pard\\qc\\fs99999999999 z\\par}";

TEST(Rtf, EveryTruncationAndRandomDamageRead) {
    std::size_t longest = 0;
    for (std::size_t size = 0; size <= everything.size(); ++size)
        longest = std::max(longest, rtf::plainText(rtf::read(everything.substr(0, size))).size());
    EXPECT_GT(longest, 10U);
    std::mt19937 random(20261122);
    for (int round = 0; round < 20000; ++round) {
        std::string damaged(everything);
        for (auto hits = 1 + random() % 6; hits > 0; --hits)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        const rtf::Document read = rtf::read(damaged);
        ASSERT_LE(rtf::plainText(read).size(), 40 * damaged.size()); // text only ever comes from the source
    }
}

TEST(Rtf, AbsurdSourcesStaySmall) {
    const std::string deep =
        "{\\rtf1 a" + std::string(1'000'000, '{') + "b" + std::string(1'000'000, '}') + "c}";
    EXPECT_EQ(rtf::plainText(rtf::read(deep)), "ac\n");

    std::string wide = "{\\rtf1\\trowd";
    for (int cell = 0; cell < 5000; ++cell)
        wide += "\\cellx" + std::to_string(cell);
    wide += "\\pard\\intbl";
    for (int cell = 0; cell < 5000; ++cell)
        wide += " x\\cell";
    const rtf::Document read = rtf::read(wide + "\\row}");
    ASSERT_EQ(read.blocks.size(), 1U);
    EXPECT_LE(std::get<rtf::Table>(read.blocks[0]).rows[0].cells.size(), 63U);
    const std::string kept = rtf::plainText(read);
    EXPECT_EQ(std::count(kept.begin(), kept.end(), 'x'), 5000); // no text is lost

    EXPECT_EQ(textOf("a\\bin999999999999 b"), "a\n");
    EXPECT_EQ(paragraph("\\li99999999\\fs0 a").format.left, 31680);
}

} // namespace
