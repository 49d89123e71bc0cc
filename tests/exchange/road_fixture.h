#pragma once

#include "basic/numbers.h"
#include "dao/dao.h"
#include "exchange/export_frame.h"
#include "exchange/road_schema.h"
#include "sheet/book.h"
#include "tools/road_tables.h"

#include "scripted_desktop.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <initializer_list>
#include <stdlib.h>
#include <string>
#include <vector>

/// A surveyor's desk: a home, a program folder with the templates, the folder of roads, and a book with a
/// file.
class RoadTest : public testing::Test {
  protected:
    RoadTest() {
        namespace fs = std::filesystem;
        setenv("HOME", home.path().c_str(), 1);
        desktop.folder = home / "app";
        roads = home / "roads";
        fs::create_directory(desktop.folder);
        fs::create_directory(roads);
        for (const char* name : {"grl.mdb", "Rod.mdb", "Rod.dwg", "Rod1.dwg"})
            fs::copy_file(std::string(ZAVRO_TEMPLATES) + "/" + name, desktop.folder + "/" + name);
        fs::copy_file(desktop.folder + "/grl.mdb", home / "Site1.grl");
        book.setProjectPath(home / "Site1.grl");
        book.DefaultFolder = roads;
        mdlTools::InitLSectFieldTable();
        frame.Dsb();
    }

    /// The rows of the book from row 1 on, the cells of each divided by commas.
    void keyed(const std::vector<std::string>& rows) {
        sheet::Grid& grid = book.MSFG;
        grid.setRows(static_cast<int>(rows.size()) + 1);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const std::string line = rows[i] + ",,,,,,,,,";
            std::size_t start = 0;
            for (int col = 0; col < grid.Cols(); ++col) {
                const std::size_t end = line.find(',', start);
                grid.setText(static_cast<int>(i) + 1, col, line.substr(start, end - start));
                start = end + 1;
            }
        }
    }

    /// The records of a table of a road database in their order: the named fields of each, divided by commas.
    static std::vector<std::string> records(const std::string& path, std::string_view table,
                                            std::initializer_list<const char*> fields) {
        dao::Database database = dao::OpenDatabase(path, exchange::roadConnect);
        std::vector<std::string> result;
        {
            dao::Recordset rows = database.OpenRecordset(table);
            for (; !rows.EOF_(); rows.MoveNext()) {
                std::string line;
                for (const char* field : fields) {
                    const dao::Value value = rows.Fields(field).value();
                    line += (line.empty() ? "" : ",") + (dao::isNull(value) ? "-" : dao::toText(value));
                }
                result.push_back(line);
            }
        }
        return result;
    }

    static std::vector<std::string> cross(const std::string& path) {
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
    std::string roads;
    ScriptedDesktop desktop;
    sheet::Book book;
    exchange::ExportFrame frame;
};
