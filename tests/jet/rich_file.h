#pragma once

#include "engine_fixture.h"

namespace jet {

/// A database with a bit of everything that a page can hold.
inline Bytes richFile() {
    const MemoryDisk disk;
    Database db = disk.create();
    Table table =
        db.createTable({.name = "T",
                        .columns = {{.name = "Id", .type = ColumnType::Long, .autonumber = true},
                                    {.name = "Chn", .type = ColumnType::Text, .size = 60},
                                    {.name = "Rem", .type = ColumnType::Memo},
                                    {.name = "Pic", .type = ColumnType::Ole},
                                    {.name = "Ok", .type = ColumnType::Boolean}},
                        .indexes = {{.name = "Id", .columns = {{"Id"}}, .kind = IndexKind::PrimaryKey},
                                    {.name = "Chn", .columns = {{"Chn"}, {"Ok", false}}}}});
    for (int i = 0; i < 1200; ++i)
        table.insert({Null{}, "01-" + std::to_string(i * 7919 % 1200),
                      std::string(i % 90 == 0 ? 9000 : i % 90, 'm'),
                      Bytes(static_cast<std::size_t>(i % 70 == 0 ? 3000 : 0), 1), i % 2 == 0});
    int i = 0;
    for (Cursor cursor = table.scan(); cursor.next(); ++i) {
        if (i % 9 == 0) table.erase(cursor.id());
        if (i % 9 == 1)
            table.update(cursor.id(), {i + 5000, std::string(60, 'z'), std::string(60, 'm'), Null{}, true});
    }
    db.createTable({.name = "Plain", .columns = {{.name = "A", .type = ColumnType::Double}}}).insert({1.5});
    db.commit();
    return disk.content();
}

} // namespace jet
