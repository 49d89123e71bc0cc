#include "engine_fixture.h"
#include "pager.h"
#include "row.h"
#include "table_maker.h"
#include "text.h"

namespace jet {
namespace {

/// A table's definition in a file of its own, and rows encoded and decoded by it.
class RowTest : public ::testing::TestWithParam<Format> {
  protected:
    RowTest() : m_pager(std::make_unique<MemoryFile>(), GetParam()) {}

    void define(std::vector<ColumnDesign> columns) {
        std::uint32_t mapPage = 0;
        m_def = tableDefOf({.name = "T", .columns = std::move(columns)}, GetParam());
        makeTable(m_pager, m_def, mapPage);
    }
    Bytes encode(const Row& row) {
        Bytes bytes;
        RowBuilder(m_pager.layout(), m_def).build(row, {}, bytes);
        return bytes;
    }
    Row decode(const Bytes& bytes) {
        const StoredRow stored(View(9, bytes), m_pager.layout(), m_def);
        Row row(m_def.columns.size());
        for (std::size_t i = 0; i < row.size(); ++i)
            decodeColumn(m_pager, m_def.columns[i], stored, row[i]);
        return row;
    }

    Pager m_pager;
    TableDef m_def;
};

TEST_P(RowTest, OffsetsHoldAtEveryLength) {
    std::vector<ColumnDesign> columns{{.name = "Id", .type = ColumnType::Long}};
    for (int i = 0; i < 7; ++i)
        columns.push_back({.name = "T" + std::to_string(i), .type = ColumnType::Binary});
    define(columns);
    // The older format keeps one byte an offset and a table of the places where the next 256 begin.
    for (std::size_t total = 0; total < 7 * 255; ++total) {
        Row row{static_cast<std::int32_t>(total)};
        std::size_t left = total;
        for (int i = 0; i < 7; ++i) {
            const std::size_t part = std::min<std::size_t>(left, total % 3 == 0 ? 255 : total / 7 + 1);
            row.emplace_back(Bytes(std::min<std::size_t>(part, 255), static_cast<std::uint8_t>(i)));
            left -= std::min(left, part);
        }
        if (total % 5 == 0) row[4] = Null{};
        ASSERT_EQ(decode(encode(row)), row) << total;
    }
}

TEST_P(RowTest, RowsFromBeforeAColumnWasAddedReadAsNull) {
    define({{.name = "A", .type = ColumnType::Long}, {.name = "B", .type = ColumnType::Text}});
    const Bytes old = encode({7, "old"});
    for (ColumnType type : {ColumnType::Double, ColumnType::Boolean, ColumnType::Text}) {
        ColumnDef column =
            columnDefOf({.name = "N" + std::to_string(static_cast<int>(type)), .type = type}, GetParam());
        column.fixedOffset = 4;
        column.variableSlot = m_def.variableSlots;
        m_def.addColumn(m_pager, column, nullptr);
    }
    EXPECT_EQ(decode(old), (Row{7, "old", Null{}, false, Null{}}));
}

TEST_P(RowTest, ATextOfFixedLengthComesBackWithoutItsPadding) {
    define({{.name = "A", .type = ColumnType::Long}, {.name = "B", .type = ColumnType::Text, .size = 5}});
    m_def.columns[1].flags |= columnFixed;
    m_def.columns[1].fixedOffset = 4;
    m_def.columns.push_back(m_def.columns[1]);
    m_def.columns[2].number = m_def.maxColumns++;
    m_def.columns[2].fixedOffset = static_cast<std::uint16_t>(4 + m_def.columns[1].length);
    for (const char* text : {"", "ab", "abcde"})
        EXPECT_EQ(decode(encode({7, text, "next"})), (Row{7, text, "next"}));
    if (GetParam() == Format::Jet3) return;
    EXPECT_EQ(decode(encode({7, "\xEF\xBB\xBFЖa", "next"})), (Row{7, "\xEF\xBB\xBFЖa", "next"}));
    EXPECT_EQ(decode(encode({7, "\xEF\xBB\xBFЖЖЖЖ", "next"})), (Row{7, "ЖЖЖЖ", "next"}))
        << "no room for a mark";
}

TEST_P(RowTest, BytesThatAreNoRowAreRefused) {
    define({{.name = "A", .type = ColumnType::Long}, {.name = "B", .type = ColumnType::Text}});
    const Bytes sound = encode({7, "sound"});
    for (std::size_t length = 0; length < sound.size(); ++length)
        (void)errorOf(
            [&] { (void)decode(Bytes(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(length))); });
    for (std::size_t at = 0; at < sound.size(); ++at)
        for (int value = 0; value < 256; ++value) {
            Bytes bytes = sound;
            bytes[at] = static_cast<std::uint8_t>(value);
            const std::optional<ErrorKind> kind = errorOf([&] { (void)decode(bytes); });
            ASSERT_TRUE(!kind || kind == ErrorKind::Corrupt) << at << " " << value;
        }
    EXPECT_EQ(errorOf([&] { (void)decode({}); }), ErrorKind::Corrupt);
    EXPECT_EQ(errorOf([&] { (void)decode(Bytes(200, 0xFF)); }), ErrorKind::Corrupt);
}

INSTANTIATE_TEST_SUITE_P(Formats, RowTest, ::testing::Values(Format::Jet3, Format::Jet4),
                         [](const auto& format) { return format.param == Format::Jet3 ? "Jet3" : "Jet4"; });

TEST(RowBytesTest, AreThoseOfTheFormat) {
    // The first row of MSysACEs, as Access stores it.
    Pager pager(std::make_unique<MemoryFile>(), Format::Jet4);
    std::uint32_t mapPage = 0;
    TableDef def = tableDefOf({.name = "A",
                               .columns = {{.name = "ObjectId", .type = ColumnType::Long},
                                           {.name = "SID", .type = ColumnType::Binary},
                                           {.name = "ACM", .type = ColumnType::Long},
                                           {.name = "FInheritable", .type = ColumnType::Boolean}}},
                              Format::Jet4);
    makeTable(pager, def, mapPage);
    Bytes bytes;
    RowBuilder(pager.layout(), def).build({2, Bytes{0x64, 0x8B}, 0x60000, false}, {}, bytes);
    EXPECT_EQ(bytes, (Bytes{4, 0, 2, 0, 0, 0, 0, 0, 6, 0, 0x64, 0x8B, 0x0C, 0, 0x0A, 0, 1, 0, 7}));
}

std::string decoded(const Bytes& stored, Format format = Format::Jet4) {
    std::string text;
    decodeText(View(0, stored), format, text);
    return text;
}

Bytes encoded(std::string_view text, bool compress, Format format = Format::Jet4) {
    Bytes stored;
    encodeText(text, format, compress, stored);
    return stored;
}

TEST(TextTest, ReadsCompressedText) {
    EXPECT_EQ(decoded({0xFF, 0xFE, 'r', 'o', 'w', '7'}), "row7");
    EXPECT_EQ(decoded({0xFF, 0xFE, 0x00, 0xC4, 0x9E, 0xF0, 0x53, 0x17, 0x53, 0xEF,
                       0x8D, 0x00, 0x20, 0x37, 0x38, 0x30, 0x20, 0x00, 0xF7, 0x53}),
              "黄台北路 780 号")
        << "words and bytes by turns";
    EXPECT_EQ(decoded({0xFF, 0xFE}), "");
    EXPECT_EQ(decoded({}), "");
    EXPECT_EQ(errorOf([] { (void)decoded({'a', 0, 'b'}); }), ErrorKind::Corrupt);
    EXPECT_EQ(errorOf([] { (void)decoded({0xFF, 0xFE, 0x00, 0x41}); }), ErrorKind::Corrupt);
}

TEST(TextTest, WritesWhatItReads) {
    const std::string nul("a\0b", 3);
    for (const std::string& text :
         {std::string(), std::string("a"), std::string("ab"), std::string("abc"), std::string("Größe"),
          std::string("Ж"), std::string("ĀĀĀ"), std::string("mixed Ж text"), std::string("😀 emoji"), nul,
          std::string("\xEF\xBB\xBFmark"), std::string("\xEF\xBB\xBFЖ mark"), std::string("\xEF\xBB\xBF"),
          std::string(2000, 'x')})
        for (bool compress : {false, true})
            EXPECT_EQ(decoded(encoded(text, compress)), text) << text;
    EXPECT_EQ(encoded("abc", true).size(), 5U);
    EXPECT_EQ(encoded("ab", true).size(), 4U) << "not shorter";
    EXPECT_EQ(encoded("Größe", true).size(), 7U);
    EXPECT_EQ(encoded(std::string(1025, 'x'), true).size(), 2050U) << "too long";
    EXPECT_EQ(decoded(encoded("\xEF\xBB\xBFĀ", false)), "Ā") << "what no form can hold";
    EXPECT_EQ(decoded(encoded("a\xFF\xC3(", false)), "a\xEF\xBF\xBD\xEF\xBF\xBD(")
        << "bytes that are no UTF-8";
    const std::string half = "\xED\xA0\x81x";
    EXPECT_EQ(decoded({0x01, 0xD8, 'x', 0}), half) << "half of a surrogate pair";
    EXPECT_EQ(encoded(half, false), (Bytes{0x01, 0xD8, 'x', 0}));
}

TEST(TextTest, TheOlderFormatHasItsCodePage) {
    EXPECT_EQ(decoded({0x80, 'a', 0xE9, 0x9F}, Format::Jet3), "€aéŸ");
    EXPECT_EQ(encoded("€aéŸ", true, Format::Jet3), (Bytes{0x80, 'a', 0xE9, 0x9F}));
    EXPECT_EQ(encoded("Ж", true, Format::Jet3), (Bytes{'?'}));
    Bytes all;
    for (int i = 1; i < 256; ++i)
        all.push_back(static_cast<std::uint8_t>(i));
    EXPECT_EQ(encoded(decoded(all, Format::Jet3), false, Format::Jet3), all);
}

} // namespace
} // namespace jet
