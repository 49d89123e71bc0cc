#include "engine_fixture.h"
#include "rc4.h"

namespace jet {
namespace {

constexpr std::size_t pageSize = 4096;
constexpr std::size_t encodingKeyAt = 0x3E;

/// The file as it stands after its pages were encoded with `key`.
Bytes encode(Bytes content, std::uint32_t key) {
    // The header's mask is an exclusive or, so that setting a zero field means changing its bits.
    for (std::size_t i = 0; i < 4; ++i)
        content[encodingKeyAt + i] ^= static_cast<std::uint8_t>(key >> (8 * i));
    for (std::size_t page = 1; page < content.size() / pageSize; ++page)
        rc4(ByteSpan(content).subspan(page * pageSize, pageSize), key ^ static_cast<std::uint32_t>(page));
    return content;
}

TEST(EncodedTest, CanBeReadButNotChanged) {
    const MemoryDisk plain;
    {
        Database db = plain.create();
        Table table = db.createTable({.name = "T", .columns = {{.name = "A", .type = ColumnType::Long}}});
        for (std::int32_t i = 0; i < 2000; ++i)
            table.insert({i});
        db.commit();
    }
    const MemoryDisk disk(encode(plain.content(), 0xA7B773E0));
    Database db = disk.open();
    EXPECT_TRUE(db.encoded());
    Table table = db.table("T");
    EXPECT_EQ(rowsOf(table), rowsOf(plain.open().table("T")));
    const RowId first = rowsOf(table).begin()->first;
    EXPECT_EQ(errorOf([&] { table.insert({1}); }), ErrorKind::EncodedWrite);
    EXPECT_EQ(errorOf([&] { table.erase(first); }), ErrorKind::EncodedWrite);
    EXPECT_EQ(errorOf([&] { db.addColumn("T", {.name = "B"}); }), ErrorKind::EncodedWrite);
    EXPECT_FALSE(db.changed());
}

TEST(EncodedTest, KeyStreamsAreThoseOfTheFormat) {
    struct Case {
        std::uint32_t key;
        Bytes encoded;
        Bytes plain;
    };
    // The start of page 2 of two databases, and the mask over page 0.
    const std::vector<Case> cases{
        {0xA7B773E0 ^ 2,
         {0xF0, 0x18, 0x87, 0xB1, 0xF2, 0xA0, 0x43, 0x0D},
         {0x02, 0x01, 0xDE, 0x0B, 0, 0, 0, 0}},
        {0xA7E0C0FE ^ 2,
         {0xE2, 0x65, 0x41, 0x65, 0x6D, 0x47, 0xAD, 0x7D},
         {0x02, 0x01, 0x56, 0x43, 0, 0, 0, 0}},
        {0x6B39DAC7, {0xB5, 0x6F, 0x03, 0x62, 0x61, 0x08, 0xC2, 0x55}, {0, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const Case& c : cases) {
        Bytes bytes = c.encoded;
        rc4(bytes, c.key);
        EXPECT_EQ(bytes, c.plain);
    }
}

} // namespace
} // namespace jet
