#include "check.h"
#include "layout.h"
#include "rich_file.h"

namespace jet {
namespace {

std::vector<std::string> faultsOf(Bytes content) {
    std::vector<std::string> faults;
    const auto kind = errorOf([&] {
        Database db = MemoryDisk(std::move(content)).open();
        faults = check(db);
    });
    if (kind) faults.emplace_back("cannot be opened");
    return faults;
}

// One bit of one field is wrong, in each page of the kind in turn: every time the checker says so.
TEST(CheckTest, NoticesEveryWrongField) {
    const Bytes sound = richFile();
    ASSERT_EQ(faultsOf(sound), std::vector<std::string>{});
    struct Field {
        PageKind kind;
        std::size_t offset;
        const char* what;
    };
    const std::vector<Field> fields = {
        {PageKind::Data, 2, "free bytes"},
        {PageKind::Data, 4, "owner"},
        {PageKind::Data, 12, "slots"},
        {PageKind::TableDef, 2, "free bytes"},
        {PageKind::TableDef, 8, "length"},
        {PageKind::TableDef, 0x10, "rows"},
        {PageKind::TableDef, 0x37, "data map"},
        {PageKind::IndexLeaf, 2, "free bytes"},
        {PageKind::IndexLeaf, 4, "owner"},
        {PageKind::IndexLeaf, 12, "previous"},
        {PageKind::IndexLeaf, 16, "next"},
        {PageKind::IndexLeaf, 20, "tail"},
        {PageKind::IndexNode, 2, "free bytes"},
        {PageKind::IndexNode, 4, "owner"},
        {PageKind::IndexNode, 20, "tail"},
        {PageKind::IndexNode, 26, "node mark"},
        {PageKind::IndexNode, 0x1E1, "separator"},
    };
    const std::size_t pageSize = jet4Layout.pageSize;
    for (const Field& field : fields) {
        int tried = 0;
        for (std::size_t page = 1; page < sound.size() / pageSize && tried < 6; ++page) {
            if (sound[page * pageSize] != static_cast<std::uint8_t>(field.kind)) continue;
            ++tried;
            Bytes content = sound;
            content[page * pageSize + field.offset] ^= 1;
            EXPECT_FALSE(faultsOf(content).empty()) << field.what << " of page " << page;
        }
        EXPECT_GT(tried, 0) << field.what;
    }
}

// Every key of a leaf is made anew from its row.
TEST(CheckTest, NoticesAWrongKey) {
    const Bytes sound = richFile();
    const std::size_t pageSize = jet4Layout.pageSize;
    int tried = 0;
    for (std::size_t page = 1; page < sound.size() / pageSize; ++page) {
        const std::size_t start = page * pageSize;
        const bool leaf = sound[start] == static_cast<std::uint8_t>(PageKind::IndexLeaf);
        const std::size_t free = sound[start + 2] + 256U * sound[start + 3];
        if (!leaf || free == jet4Layout.entryRoom()) continue;
        ++tried;
        Bytes content = sound;
        content[start + jet4Layout.entriesAt + 1] ^= 1;
        EXPECT_FALSE(faultsOf(content).empty()) << "page " << page;
    }
    EXPECT_GT(tried, 3);
}

TEST(CheckTest, NoticesAUsedPageThatIsMarkedFree) {
    Bytes content = richFile();
    // Row 0 of page 1 starts at the offset in its slot; behind kind and first page stand the bits.
    const std::size_t page = jet4Layout.pageSize;
    const std::size_t row = (content[page + 14] + 256U * content[page + 15]) & 0x1FFF;
    content[page + row + 5] ^= 1 << 3; // page 3
    const std::vector<std::string> faults = faultsOf(content);
    ASSERT_FALSE(faults.empty());
    EXPECT_NE(faults.front().find("marked as free"), std::string::npos) << faults.front();
}

} // namespace
} // namespace jet
