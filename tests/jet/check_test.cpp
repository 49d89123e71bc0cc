#include "catalog.h"
#include "check.h"
#include "data_page.h"
#include "layout.h"
#include "pager.h"
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

/// The file after `change` was at its pages.
Bytes edited(const Bytes& content, const std::function<void(Pager&)>& change) {
    const auto file = std::make_shared<MemoryFile>(content);
    Pager pager(std::make_unique<SharedFile>(file), OpenMode::ReadWrite);
    change(pager);
    pager.commit();
    return file->content();
}

// What files of Access have is no damage; some of it is told at the strict level.
TEST(CheckTest, TellsDamageFromWhatAccessLeavesBehind) {
    const MemoryDisk disk;
    {
        Database db = disk.create();
        Table table = db.createTable(
            {.name = "T", .columns = {{.name = "A"}}, .indexes = {{.name = "A", .columns = {{"A"}}}}});
        for (int i = 0; i < 400; ++i)
            table.insert({std::to_string(i)});
        db.commit();
    }
    const auto freeRow = [](Pager& pager) { return slotAt(pager.view(1), pager.layout(), 0).start; };
    const auto addPage = [](Pager& pager, PageKind kind) {
        const std::uint32_t page = pager.allocate();
        pager.edit(page).set16(0, 0x100U | static_cast<unsigned>(kind));
        return page;
    };
    const auto tableDef = [](Pager& pager) {
        return TableDef::load(pager, Catalog(pager).table("T")->page());
    };
    struct Case {
        const char* what;
        std::function<void(Pager&)> change;
        std::string normal, strict, note;
    };
    const std::vector<Case> cases{
        {"a map that grew",
         [&](Pager& pager) {
             const RowPointer where = tableDef(pager).ownedPages;
             const std::vector<std::uint32_t> pages = UsageMap(pager, where).pages();
             UsageMap(pager, where).clear();
             const std::uint32_t start =
                 resizeRow(pager.editRows(where.page), pager.layout(), where.row, 101, 0);
             pager.edit(where.page).fill(start, 101, 0);
             UsageMap grown(pager, where);
             for (std::uint32_t page : pages)
                 grown.add(page);
         },
         "", "", ""},
        {"a definition that leaked", [&](Pager& pager) { addPage(pager, PageKind::TableDef); }, "",
         "a definition that no table has", ""},
        {"a page that leaked", [&](Pager& pager) { addPage(pager, PageKind::Data); }, "",
         "neither used nor marked as free", ""},
        {"a map page of the second global map",
         [&](Pager& pager) {
             const std::uint32_t page = addPage(pager, PageKind::UsageMap);
             Edit maps = pager.edit(1);
             const Slot second = slotAt(maps, pager.layout(), 1);
             maps.set8(second.start, 1);
             maps.set32(second.start + 1, page);
         },
         "", "", ""},
        {"a map of free pages from page 8 on",
         [&](Pager& pager) { pager.edit(1).set32(freeRow(pager) + 1, 8); }, "", "does not start at page 0",
         ""},
        {"a wrong count of rows",
         [&](Pager& pager) { pager.edit(tableDef(pager).page).set32(pager.layout().rowCountAt, 7); }, "",
         "row count of 'T' is 7 instead of 400", "row count of 'T' is 7 instead of 400"},
    };
    const auto expect = [](const std::vector<std::string>& lines, const std::string& part) {
        EXPECT_EQ(lines.empty(), part.empty()) << (lines.empty() ? part : lines.front());
        if (!lines.empty()) {
            EXPECT_NE(lines.front().find(part), std::string::npos) << lines.front();
        }
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Database db = MemoryDisk(edited(disk.content(), c.change)).open();
        std::vector<std::string> notes;
        expect(check(db, CheckLevel::Normal, &notes), c.normal);
        expect(notes, c.note);
        expect(check(db, CheckLevel::Strict, &notes), c.strict);
        expect(notes, "");
        if (!c.note.empty()) {
            Table table = db.table("T");
            EXPECT_EQ(rowsOf(table).size(), 400U) << "rows are read to their end";
            table.insert({"one more"});
            db.commit();
            EXPECT_EQ(table.rowCount(), 401U) << "the count is right once rows were changed";
            EXPECT_EQ(check(db), std::vector<std::string>{});
        }
    }
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
