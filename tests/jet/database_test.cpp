#include "check.h"
#include "engine_fixture.h"

#include "catalog.h"
#include "inside.h"

namespace jet {
namespace {

constexpr auto Boolean = ColumnType::Boolean;
constexpr auto Long = ColumnType::Long;
constexpr auto Single = ColumnType::Single;
constexpr auto Double = ColumnType::Double;
constexpr auto Text = ColumnType::Text;
constexpr auto Memo = ColumnType::Memo;
constexpr auto Ole = ColumnType::Ole;

const std::vector<ColumnType> everyType{Boolean,
                                        ColumnType::Byte,
                                        ColumnType::Integer,
                                        Long,
                                        ColumnType::Currency,
                                        Single,
                                        Double,
                                        ColumnType::DateTime,
                                        ColumnType::Binary,
                                        Text,
                                        Ole,
                                        Memo,
                                        ColumnType::Guid,
                                        ColumnType::Numeric};

TableDesign everyTypeTable() {
    TableDesign design;
    design.name = "Every";
    for (ColumnType type : everyType)
        design.columns.push_back({.name = "C" + std::to_string(static_cast<int>(type)), .type = type});
    design.indexes = {{.name = "Byte", .columns = {{"C2"}, {"C4", false}}},
                      {.name = "Text", .columns = {{"C10"}, {"C1"}, {"C7", false}}},
                      {.name = "Other", .columns = {{"C15"}, {"C16"}, {"C8"}, {"C5", false}, {"C9"}}}};
    return design;
}

Row everyTypeRow(std::int32_t i) {
    Guid guid;
    guid.bytes = {0xBC, 0x96, 0x30, 0x3A, static_cast<std::uint8_t>(i)};
    Numeric number;
    number.negative = i % 3 == 0;
    number.magnitude[15] = static_cast<std::uint8_t>(i + 1);
    return {i % 2 == 0,
            static_cast<std::uint8_t>(i),
            static_cast<std::int16_t>(-i),
            i,
            Currency{i * 12345},
            static_cast<float>(i) / 4,
            i / 8.0,
            DateTime{i - 100.25},
            Bytes(static_cast<std::size_t>(i % 40), 7),
            "Straße " + std::to_string(i),
            Bytes(static_cast<std::size_t>(i) * 130, 9),
            std::string(static_cast<std::size_t>(i) * 70, 'm') + "Ω",
            guid,
            number};
}

TableDesign keyed(std::vector<IndexDesign> indexes) {
    return {.name = "T",
            .columns = {{.name = "Id", .type = Long},
                        {.name = "Name", .type = Text, .size = 40},
                        {.name = "Level", .type = Double}},
            .indexes = std::move(indexes)};
}

Row keyedRow(Value id, Value name, Value level = Null{}) {
    return {std::move(id), std::move(name), std::move(level)};
}

TEST(DatabaseTest, KeepsEveryTypeAndNullThroughAFile) {
    const MemoryDisk disk;
    Rows written;
    {
        Database db = disk.create();
        Table table = db.createTable(everyTypeTable());
        for (std::int32_t i = 0; i < 250; ++i) {
            Row row = everyTypeRow(i);
            if (i % 7 == 0)
                for (std::size_t c = 1; c < row.size(); c += static_cast<std::size_t>(i % 3) + 1)
                    row[c] = Null{};
            written[table.insert(row)] = row;
        }
        EXPECT_EQ(rowsOf(table), written) << "before the commit";
        db.commit();
    }
    const Database db = disk.open();
    EXPECT_EQ(db.tableNames(), std::vector<std::string>{"Every"});
    const Table table = db.table("EVERY");
    for (std::size_t i = 0; i < everyType.size(); ++i)
        EXPECT_EQ(table.columns()[i].type, everyType[i]);
    EXPECT_EQ(rowsOf(table), written);
    expectIndexesMatch(table);
}

TEST(DatabaseTest, RowsWithoutAnIndexComeBackInTheOrderInWhichTheyWereWritten) {
    const MemoryDisk disk;
    Database db = disk.create();
    Table table = db.createTable(keyed({}));
    Random random(3);
    for (int round = 0; round < 3; ++round) {
        table.clear();
        for (std::int32_t i = 0; i < 3000; ++i)
            table.insert(keyedRow(i, std::string(random() % 40, 'x'), i * 0.5));
        // Rows that grow move elsewhere, but keep their place in the order.
        if (round == 1)
            for (Cursor cursor = table.scan(); cursor.next();)
                table.update(cursor.id(),
                             keyedRow(std::get<std::int32_t>(cursor.row()[0]), std::string(40, 'y')));
        std::int32_t expected = 0;
        for (Cursor cursor = table.scan(); cursor.next(); ++expected)
            ASSERT_EQ(cursor.row()[0], Value(expected));
        EXPECT_EQ(expected, 3000);
    }
}

TEST(DatabaseTest, AThousandSavesOfAnySizeLeaveASoundFile) {
    const MemoryDisk disk;
    {
        Database db = disk.create();
        TableDesign design = keyed({{.name = "Id", .columns = {{"Id"}}, .kind = IndexKind::PrimaryKey},
                                    {.name = "Name", .columns = {{"Name"}}}});
        design.columns.push_back({.name = "Rem", .type = Memo});
        db.createTable(design);
        db.commit();
    }
    Random random(1000);
    std::size_t largest = 0;
    for (int save = 0; save < 1000; ++save) {
        Database db = disk.open();
        Table table = db.table("T");
        if (save % 2 == 0) table.clear();
        for (Cursor cursor = table.scan(); cursor.next();)
            table.erase(cursor.id());
        const auto rows = static_cast<std::int32_t>(random() % 8 == 0 ? random() % 900 : random() % 60);
        for (std::int32_t i = 0; i < rows; ++i)
            table.insert({i, "01-" + std::to_string(random() % 500), i * 0.5,
                          std::string(random() % 30 == 0 ? random() % 9000 : random() % 80, 'r')});
        db.commit();
        ASSERT_EQ(check(db), std::vector<std::string>{}) << "save " << save;
        ASSERT_EQ(disk.open({}, OpenMode::ReadOnly).table("T").rowCount(), static_cast<std::uint32_t>(rows));
        if (save == 500) largest = disk.content().size();
    }
    EXPECT_LE(disk.content().size(), largest + largest / 8) << "pages are not given back";
}

TEST(DatabaseTest, IndexRulesHoldBeforeAnythingIsTouched) {
    const MemoryDisk disk;
    Database db = disk.create();
    Table table =
        db.createTable(keyed({{.name = "Key", .columns = {{"Id"}}, .kind = IndexKind::PrimaryKey},
                              {.name = "Name", .columns = {{"Name"}}, .kind = IndexKind::Unique},
                              {.name = "Level", .columns = {{"Level", false}}, .ignoreNulls = true},
                              {.name = "Both", .columns = {{"Name"}, {"Level"}}, .required = false}}));
    const RowId first = table.insert(keyedRow(1, "Émile", 2.5));
    table.insert(keyedRow(2, Null{}, 2.5));
    table.insert(keyedRow(3, Null{}));
    db.commit();
    const Bytes before = disk.content();
    struct Case {
        const char* what;
        Row row;
        ErrorKind kind;
    };
    const std::vector<Case> cases{
        {"primary key twice", keyedRow(1, "b"), ErrorKind::DuplicateKey},
        {"text that differs in case alone", keyedRow(4, "éMILE"), ErrorKind::DuplicateKey},
        {"text that differs in blanks at the end", keyedRow(4, "Émile  "), ErrorKind::DuplicateKey},
        {"Null in the primary key", keyedRow(Null{}, "b"), ErrorKind::NullKey},
        {"text too long", keyedRow(4, std::string(41, 'x')), ErrorKind::TextTooLong},
        {"text for a number", keyedRow("4", "b"), ErrorKind::TypeMismatch},
        {"a value too few", Row{4, "b"}, ErrorKind::TypeMismatch},
    };
    const Rows rows = rowsOf(table);
    for (const Case& c : cases) {
        EXPECT_EQ(errorOf([&] { table.insert(c.row); }), c.kind) << c.what;
        if (c.kind != ErrorKind::DuplicateKey) {
            EXPECT_EQ(errorOf([&] { table.update(first, c.row); }), c.kind) << c.what;
        }
        EXPECT_FALSE(db.changed()) << c.what;
    }
    EXPECT_EQ(errorOf([&] { table.update(first, keyedRow(2, "b")); }), ErrorKind::DuplicateKey);
    EXPECT_EQ(rowsOf(table), rows);
    table.update(first, keyedRow(1, "ÉMILE", 3.0)); // its own key is no duplicate
    table.insert(keyedRow(9, std::string(39, 'x') + "é"));
    expectIndexesMatch(table);
    EXPECT_EQ(table.seekAll(2, {}).size(), 2U) << "rows without a level are not in that index";
    const std::vector<Value> name{std::string("émile")};
    EXPECT_EQ(table.seek(1, name), first);
    const std::vector<Value> none{std::string("emil")};
    EXPECT_EQ(table.seek(1, none), std::nullopt);
}

TEST(DatabaseTest, NumbersRowsAutomatically) {
    const MemoryDisk disk;
    Database db = disk.create();
    Table table = db.createTable(
        {.name = "T",
         .columns = {{.name = "Id", .type = Long, .autonumber = true}, {.name = "N", .type = Long}},
         .indexes = {{.name = "K", .columns = {{"Id"}}, .kind = IndexKind::PrimaryKey}}});
    for (std::int32_t i = 1; i <= 3; ++i) {
        EXPECT_EQ(table.nextAutonumber(), i);
        EXPECT_EQ(table.read(table.insert({Null{}, i}))[0], Value(i));
    }
    table.insert({41, 4});
    table.clear();
    db.commit();
    Database again = disk.open();
    EXPECT_EQ(again.table("T").nextAutonumber(), 42) << "emptying the table does not start again";
}

TEST(DatabaseTest, LongValuesAreGivenBack) {
    const MemoryDisk disk;
    Database db = disk.create();
    Table table =
        db.createTable({.name = "T", .columns = {{.name = "M", .type = Memo}, {.name = "O", .type = Ole}}});
    const std::vector<std::size_t> lengths{0,    1,    63,   64,   65,    1000,  4075,
                                           4076, 4077, 8144, 8145, 50000, 200000};
    std::map<RowId, Row> model;
    for (std::size_t length : lengths) {
        const Row row{std::string(length / 2, 'a') + std::string(length > 3 ? "Ж" : ""), Bytes(length, 0xAB)};
        model[table.insert(row)] = row;
    }
    EXPECT_EQ(rowsOf(table), model);
    db.commit();
    for (int round = 0; round < 20; ++round) {
        for (auto& [id, row] : model) {
            row = {row[0], Bytes(lengths[static_cast<std::size_t>(round) % lengths.size()],
                                 static_cast<std::uint8_t>(round))};
            table.update(id, row);
        }
        EXPECT_EQ(rowsOf(table), model);
        ASSERT_EQ(check(db), std::vector<std::string>{}) << "pieces that no row has";
    }
    for (const auto& [id, row] : model)
        table.erase(id);
    EXPECT_EQ(check(db), std::vector<std::string>{}) << "pages that nobody has";
}

TEST(DatabaseTest, AddsColumnsToTablesWithRows) {
    const MemoryDisk disk;
    Database db = disk.create();
    // The first column of variable length is the one for which rows must be written anew.
    Table table = db.createTable({.name = "T",
                                  .columns = {{.name = "A", .type = Long}, {.name = "F", .type = Boolean}},
                                  .indexes = {{.name = "A", .columns = {{"A"}}, .kind = IndexKind::Unique}}});
    for (std::int32_t i = 0; i < 900; ++i)
        table.insert({i, i % 3 == 0});
    db.commit();
    Database again = disk.open();
    table = again.table("T");
    std::vector<ColumnDesign> added{{.name = "S", .type = Single, .required = true},
                                    {.name = "Z", .type = Text, .allowZeroLength = true}};
    for (ColumnType type : everyType)
        added.push_back({.name = "C" + std::to_string(static_cast<int>(type)), .type = type});
    for (const ColumnDesign& column : added) {
        again.addColumn("t", column);
        EXPECT_EQ(errorOf([&] { again.addColumn("T", column); }), ErrorKind::AlreadyExists);
    }
    std::int32_t count = 0;
    for (Cursor cursor = table.scan(); cursor.next(); ++count) {
        ASSERT_EQ(cursor.row()[0], Value(count));
        ASSERT_EQ(cursor.row()[1], Value(count % 3 == 0));
        for (std::size_t c = 2; c < cursor.row().size(); ++c)
            ASSERT_TRUE(isNull(cursor.row()[c]) || cursor.row()[c] == Value(false)) << c;
    }
    EXPECT_EQ(count, 900);
    Row row{2000, true, 1.5F, ""};
    for (Value& value : everyTypeRow(60))
        row.push_back(value);
    table.insert(row);
    const std::vector<Value> first{std::int32_t{0}};
    row[0] = 0;
    table.update(*table.seek(0, first), row);
    again.commit();
    const Database last = disk.open();
    EXPECT_EQ(rowsOf(last.table("T")), rowsOf(table));
    EXPECT_EQ(last.table("T").read(*last.table("T").seek(0, first)), row);
    expectIndexesMatch(last.table("T"));
    for (const Column& column : last.table("T").columns()) {
        EXPECT_EQ(column.required, column.name == "S");
        EXPECT_EQ(column.allowZeroLength, column.name == "Z");
    }
}

// The key of an empty Binary starts the keys of all others.
TEST(DatabaseTest, AnEmptyBinaryHasAKeyOfItsOwn) {
    for (IndexKind kind : {IndexKind::Plain, IndexKind::Unique}) {
        const MemoryDisk disk;
        Database db = disk.create();
        Table table = db.createTable(
            {.name = "T",
             .columns = {{.name = "A", .type = ColumnType::Binary}, {.name = "B", .type = Long}},
             .indexes = {{.name = "A", .columns = {{"A"}}, .kind = kind},
                         {.name = "AB", .columns = {{"A", false}, {"B"}}, .kind = kind}}});
        for (std::int32_t i = 0; i < 600; ++i)
            table.insert({Bytes{0, 0, static_cast<std::uint8_t>(i / 256), static_cast<std::uint8_t>(i)}, i});
        const RowId empty = table.insert({Bytes{}, 7});
        const bool again = !errorOf([&] { table.insert({Bytes{}, 8}); });
        EXPECT_EQ(again, kind == IndexKind::Plain);
        const std::vector<Value> key{Bytes{}};
        for (int index : {0, 1}) {
            EXPECT_EQ(table.seek(index, key), empty);
            EXPECT_EQ(table.seekAll(index, key).size(), again ? 2U : 1U);
        }
        EXPECT_EQ(check(db), std::vector<std::string>{});
        for (RowId id : table.seekAll(0, key))
            table.erase(id);
        EXPECT_EQ(table.seek(0, key), std::nullopt);
        EXPECT_EQ(check(db), std::vector<std::string>{});
    }
}

TEST(DatabaseTest, RowsShorterThanAPointerCanGrowOnAFullPage) {
    const MemoryDisk disk;
    Database db = disk.create();
    Table table = db.createTable({.name = "T", .columns = {{.name = "A", .type = Boolean}}});
    Rows model;
    for (int i = 0; i < 100; ++i)
        model[table.insert({i % 2 == 0})];
    for (const char* name : {"B", "C", "D"})
        db.addColumn("T", {.name = name, .type = ColumnType::Guid});
    for (int i = 0; i < 100; ++i)
        model[table.insert({i % 2 == 0, Guid{}, Guid{}, Guid{}})];
    std::uint8_t number = 0;
    for (auto& [id, row] : model) {
        row = {number % 3 == 0, Guid{{++number}}, Guid{{7}}, Null{}};
        table.update(id, row);
    }
    db.commit();
    EXPECT_EQ(rowsOf(disk.open().table("T")), model);
    EXPECT_EQ(check(db), std::vector<std::string>{});
}

TEST(DatabaseTest, RefusesWhatTheFormatCannotHold) {
    const MemoryDisk disk;
    Database db = disk.create();
    db.createTable(keyed({}));
    std::vector<ColumnDesign> many(256, {.name = "", .type = Long});
    for (std::size_t i = 0; i < many.size(); ++i)
        many[i].name = "C" + std::to_string(i);
    std::vector<ColumnDesign> guids(many.begin(), many.begin() + 255);
    for (ColumnDesign& column : guids)
        column.type = ColumnType::Guid;
    struct Case {
        const char* what;
        TableDesign design;
        ErrorKind kind;
    };
    const std::vector<Case> cases{
        {"a table twice", {.name = "t", .columns = {{.name = "A"}}}, ErrorKind::AlreadyExists},
        {"no columns", {.name = "U"}, ErrorKind::InvalidDesign},
        {"too many columns", {.name = "U", .columns = many}, ErrorKind::InvalidDesign},
        {"columns too long together", {.name = "U", .columns = guids}, ErrorKind::InvalidDesign},
        {"a column twice",
         {.name = "U", .columns = {{.name = "A"}, {.name = "a"}}},
         ErrorKind::InvalidDesign},
        {"a text too long", {.name = "U", .columns = {{.name = "A", .size = 256}}}, ErrorKind::InvalidDesign},
        {"a strange name", {.name = "U!", .columns = {{.name = "A"}}}, ErrorKind::InvalidDesign},
        {"an index on a memo",
         {.name = "U",
          .columns = {{.name = "A", .type = Memo}},
          .indexes = {{.name = "I", .columns = {{"A"}}}}},
         ErrorKind::InvalidDesign},
        {"an index on nothing",
         {.name = "U", .columns = {{.name = "A"}}, .indexes = {{.name = "I", .columns = {{"B"}}}}},
         ErrorKind::InvalidDesign},
    };
    const std::uint32_t pages = Inside::pager(db).pageCount();
    for (const Case& c : cases)
        EXPECT_EQ(errorOf([&] { db.createTable(c.design); }), c.kind) << c.what;
    EXPECT_EQ(Inside::pager(db).pageCount(), pages);
    EXPECT_EQ(errorOf([&] { (void)db.table("U"); }), ErrorKind::NotFound);
    std::string wideText;
    for (int i = 0; i < 255; ++i)
        wideText += "Ж";
    TableDesign wideDesign{.name = "Wide", .indexes = {{.name = "I"}}};
    for (const char* name : {"A", "B", "C", "D", "E", "F", "G", "H", "I"}) {
        wideDesign.columns.push_back({.name = name});
        if (*name < 'F') wideDesign.indexes[0].columns.push_back({name});
    }
    Table wide = db.createTable(wideDesign);
    EXPECT_EQ(errorOf([&] { wide.insert(Row(9, std::string(200, 'Z'))); }), std::nullopt);
    Row row(9);
    std::fill(row.begin() + 5, row.end(), wideText);
    EXPECT_EQ(errorOf([&] { wide.insert(row); }), std::nullopt);
    EXPECT_EQ(errorOf([&] { wide.insert(Row(9, wideText)); }), ErrorKind::RowTooLong);
    EXPECT_EQ(errorOf([&] { wide.insert(Row(9, std::string(255, 'Z'))); }), ErrorKind::RowTooLong) << "key";
    EXPECT_EQ(wide.rowCount(), 2U);
    // Columns of fixed length go on until an empty record would have no room, and no further.
    guids.resize(220);
    Table fixed = db.createTable({.name = "Fixed", .columns = guids});
    fixed.insert(Row(guids.size()));
    int added = 0;
    while (!errorOf([&] { db.addColumn("Fixed", {.name = "D" + std::to_string(added), .type = Double}); }))
        ++added;
    EXPECT_GT(added, 30);
    EXPECT_EQ(errorOf([&] { fixed.insert(Row(fixed.columns().size())); }), std::nullopt);
    EXPECT_EQ(errorOf([&] { db.commit(); }), std::nullopt) << "what was refused left nothing behind";
    EXPECT_EQ(check(db), std::vector<std::string>{});
}

TEST(DatabaseTest, LongDefinitionsTakeSeveralPages) {
    const MemoryDisk disk;
    Database db = disk.create();
    TableDesign design{.name = "T", .columns = {{.name = "Id", .type = Long}}};
    for (int i = 0; i < 200; ++i)
        design.columns.push_back(
            {.name = "A column with quite a long name " + std::to_string(i), .type = Text, .size = 10});
    db.createTable(design);
    db.addColumn("T", {.name = "Last", .type = Double});
    Row row(202);
    row[0] = 1;
    row[201] = 2.5;
    row[100] = "middle";
    db.table("T").insert(row);
    db.commit();
    Database again = disk.open();
    EXPECT_EQ(rowsOf(again.table("T")).begin()->second, row);
}

/// All texts of a table are sorted as if by another language.
void sortOtherwise(Bytes& content, const char* table) {
    Pager pager(std::make_unique<MemoryFile>(content), OpenMode::ReadOnly);
    const TableDef def = TableDef::load(pager, Catalog(pager).table(table)->page());
    constexpr std::size_t sortOrderAt = 11; // in the block of a column
    std::size_t at = def.page * jet4Layout.pageSize + jet4Layout.countersAt +
                     def.indexData.size() * jet4Layout.counterBytes;
    for (std::size_t i = 0; i < def.columns.size(); ++i, at += jet4Layout.columnBytes)
        if (content[at] == static_cast<std::uint8_t>(Text)) content[at + sortOrderAt] = 0x11;
}

TEST(DatabaseTest, AnIndexSortedByUnknownRulesKeepsItsKeys) {
    const MemoryDisk disk;
    Rows rows;
    {
        Database db = disk.create();
        Table table = db.createTable(keyed({{.name = "Id", .columns = {{"Id"}}, .kind = IndexKind::Unique},
                                            {.name = "Name", .columns = {{"Name"}}}}));
        for (std::int32_t i = 0; i < 50; ++i)
            table.insert(keyedRow(i, "n" + std::to_string(i)));
        rows = rowsOf(table);
        db.commit();
    }
    Bytes content = disk.content();
    sortOtherwise(content, "T");
    const MemoryDisk foreign(content);
    {
        Database db = foreign.open();
        Table table = db.table("T");
        EXPECT_EQ(rowsOf(table), rows);
        EXPECT_TRUE(table.indexes()[0].seekable);
        EXPECT_FALSE(table.indexes()[1].seekable);
        const std::vector<Value> id{std::int32_t{7}};
        const std::vector<Value> name{std::string("n7")};
        const RowId seventh = *table.seek(0, id);
        EXPECT_EQ(errorOf([&] { (void)table.seek(1, name); }), ErrorKind::UnsupportedSort);
        EXPECT_EQ(errorOf([&] { table.insert(keyedRow(99, "n")); }), ErrorKind::UnsupportedSort);
        EXPECT_EQ(errorOf([&] { table.erase(seventh); }), ErrorKind::UnsupportedSort);
        EXPECT_EQ(errorOf([&] { table.clear(); }), ErrorKind::UnsupportedSort);
        EXPECT_EQ(errorOf([&] { table.update(seventh, keyedRow(7, "N8")); }), ErrorKind::UnsupportedSort);
        rows[seventh] = keyedRow(77, "n7", 1.5);
        table.update(seventh, rows[seventh]);
        db.createTable({.name = "U", .columns = {{.name = "A"}}}).insert({"other tables can be changed"});
        db.commit();
    }
    EXPECT_EQ(rowsOf(foreign.open().table("T")), rows);
    content = foreign.content();
    sortOtherwise(content, "MSysObjects");
    Database db = MemoryDisk(content).open();
    EXPECT_EQ(errorOf([&] { db.createTable({.name = "V", .columns = {{.name = "A"}}}); }),
              ErrorKind::UnsupportedSort);
    EXPECT_EQ(errorOf([&] { db.addColumn("T", {.name = "Later"}); }), std::nullopt);
    EXPECT_EQ(errorOf([&] { db.commit(); }), std::nullopt);
    expectIndexesMatch(db.table("T"));
}

TEST(DatabaseTest, ANameThatTheCatalogHasIsRefused) {
    const MemoryDisk disk;
    Database db = disk.create();
    db.createTable({.name = "Érosion", .columns = {{.name = "A"}}});
    Table catalog = db.table("MSysObjects");
    Row query = rowsOf(catalog).rbegin()->second;
    query[static_cast<std::size_t>(*catalog.column("Id"))] = std::int32_t{-7};
    query[static_cast<std::size_t>(*catalog.column("Name"))] = "Levels";
    query[static_cast<std::size_t>(*catalog.column("Type"))] = std::int16_t{5};
    catalog.insert(query);
    db.commit();
    Database again = disk.open();
    for (const char* name : {"éROSION", "LEVELS"})
        EXPECT_EQ(errorOf([&] { again.createTable({.name = name, .columns = {{.name = "A"}}}); }),
                  ErrorKind::AlreadyExists)
            << name;
    EXPECT_FALSE(again.changed());
}

TEST(DatabaseTest, PasswordsOpenAndRefuse) {
    const MemoryDisk disk;
    disk.create({.password = "MörderZ"}).commit();
    EXPECT_EQ(errorOf([&] { (void)disk.open("morderz"); }), ErrorKind::WrongPassword);
    EXPECT_EQ(errorOf([&] { (void)disk.open(); }), ErrorKind::WrongPassword);
    EXPECT_EQ(errorOf([&] { (void)disk.open("MörderZ"); }), std::nullopt);
    const MemoryDisk openDisk;
    openDisk.create().commit();
    EXPECT_EQ(errorOf([&] { (void)openDisk.open("anything"); }), std::nullopt);
    EXPECT_EQ(errorOf([&] { (void)MemoryDisk().create({.password = std::string(21, 'x')}); }),
              ErrorKind::InvalidDesign);
}

TEST(DatabaseTest, ReadOnlyMeansReadOnly) {
    const MemoryDisk disk;
    {
        Database db = disk.create();
        db.createTable(keyed({})).insert(keyedRow(1, "a"));
        db.commit();
    }
    Database db = disk.open({}, OpenMode::ReadOnly);
    Table table = db.table("T");
    const RowId id = rowsOf(table).begin()->first;
    EXPECT_EQ(errorOf([&] { table.insert(keyedRow(2, "b")); }), ErrorKind::ReadOnly);
    EXPECT_EQ(errorOf([&] { table.update(id, keyedRow(2, "b")); }), ErrorKind::ReadOnly);
    EXPECT_EQ(errorOf([&] { table.erase(id); }), ErrorKind::ReadOnly);
    EXPECT_EQ(errorOf([&] { table.clear(); }), ErrorKind::ReadOnly);
    EXPECT_EQ(errorOf([&] { db.createTable({.name = "U", .columns = {{.name = "A"}}}); }),
              ErrorKind::ReadOnly);
    EXPECT_EQ(errorOf([&] { db.addColumn("T", {.name = "B"}); }), ErrorKind::ReadOnly);
    db.commit();
    EXPECT_EQ(rowsOf(table).size(), 1U);
}

} // namespace
} // namespace jet
