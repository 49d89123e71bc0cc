#pragma once

#include "dao/dao.h"
#include "exchange/road_schema.h"
#include "exchange/transfer.h"
#include "project/book.h"
#include "tools/road_tables.h"
#include "tools/start_routine.h"

#include "field_book.h"
#include "scripted_desktop.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <stdlib.h>

/// A surveyor's desk: a home, a program folder with the templates, the folder of roads, and a book with a
/// file.
class RoadTest : public testing::Test {
  protected:
    RoadTest() {
        namespace fs = std::filesystem;
        setenv("HOME", home.path().c_str(), 1);
        desktop.folder = home / "app";
        fs::create_directory(desktop.folder);
        fs::create_directory(roads);
        for (const char* name : {"grl.mdb", "Rod.mdb", "Rod.dwg", "Rod1.dwg"})
            fs::copy_file(std::string(ZAVRO_TEMPLATES) + "/" + name, desktop.folder + "/" + name);
        fs::copy_file(desktop.folder + "/grl.mdb", home / "Site1.grl");
        book.setProjectPath(home / "Site1.grl");
        book.DefaultFolder = roads;
        mdlTools::Main([] { EXPECT_EQ(mdlTools::LSectFieldName(47), "RExCrW"); });
        frame.Dsb(); // as the Export button leaves it
    }

    /// A transfer of a book of these rows, divided by "|", or once more of the rows that are there.
    exchange::TransferEnd transfer(std::string_view rows) {
        keyRows(book.MSFG, splitAt(rows, '|'));
        return transfer();
    }
    exchange::TransferEnd transfer() {
        desktop.boxes.clear();
        book.notices.bookBegins();
        return exchange::transfer(book, desktop, frame);
    }

    /// The records of a table of a road database in their order, divided by "|", and the named fields of each
    /// by commas.
    static std::string records(const std::string& path, std::string_view table,
                               std::initializer_list<const char*> fields) {
        dao::Database database = dao::OpenDatabase(path, exchange::roadConnect);
        std::string result;
        for (dao::Recordset rows = database.OpenRecordset(table); !rows.EOF_(); rows.MoveNext()) {
            if (!result.empty()) result += '|';
            for (const char* field : fields) {
                const dao::Value value = rows.Fields(field).value();
                result +=
                    (field == *fields.begin() ? "" : ",") + (dao::isNull(value) ? "-" : dao::toText(value));
            }
        }
        return result;
    }
    static std::string cross(const std::string& path) {
        return records(path, "CSect", {"Chn", "Side", "Oft", "Grl", "Frl", "Rmk"});
    }

    /// The files below `folder`, sorted, paths from there.
    static std::vector<std::string> filesIn(const std::string& folder) {
        std::vector<std::string> result;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
            if (entry.is_regular_file())
                result.push_back(std::filesystem::relative(entry.path(), folder).string());
        std::sort(result.begin(), result.end());
        return result;
    }

    std::vector<std::string> messages() const {
        std::vector<std::string> result;
        for (const ScriptedDesktop::Box& box : desktop.boxes)
            result.push_back(box.text);
        return result;
    }

    /// The rows whose chainage cell is marked as a data error.
    std::vector<int> marked() const {
        std::vector<int> result;
        for (int row = 1; row < book.MSFG.Rows(); ++row)
            if (book.MSFG.CellBackColor(row, 0) == sheet::dataError) result.push_back(row);
        return result;
    }

    /// Nothing of a transfer may be left in the program folder, and the frame must be closed as Cancel does
    /// it.
    void expectCleanDesk() const {
        EXPECT_THAT(filesIn(desktop.folder), testing::Not(testing::Contains("Rodd.mdb")));
        EXPECT_FALSE(frame.visible);
        EXPECT_TRUE(frame.commandsEnabled);
        EXPECT_TRUE(book.MSFG.Visible());
        EXPECT_FALSE(desktop.progressShown);
        EXPECT_FALSE(mdlTools::RoadDb.has_value());
        EXPECT_FALSE(mdlTools::RoadLSect.has_value());
    }

    TempFolder home;
    std::string roads = home / "roads";
    std::string road = roads + "/Site1/Road.mdb";
    ScriptedDesktop desktop;
    project::Book book;
    exchange::ExportFrame frame;
};
