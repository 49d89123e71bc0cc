#pragma once

#include "dao/dao.h"
#include "jet/database.h"
#include "project/project_commands.h"
#include "project/project_file.h"
#include "scripted_desktop.h"
#include "sheet/book.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

using Row = std::vector<std::string>;
using Rows = std::vector<Row>;

/// A design of Grl whose fields B to rl are of `reading`.
inline jet::TableDesign grlDesign(jet::ColumnType reading = jet::ColumnType::Text) {
    const int size = reading == jet::ColumnType::Text ? 20 : 0;
    jet::TableDesign design{"Grl", {}, {}};
    design.columns.push_back(
        {.name = "Chn", .type = jet::ColumnType::Text, .size = 25, .allowZeroLength = true});
    design.columns.push_back({.name = "Oft", .type = jet::ColumnType::Double});
    for (const char* name : {"B", "i", "F", "HI", "rl"})
        design.columns.push_back({.name = name, .type = reading, .size = size});
    design.columns.push_back({.name = "Rem", .type = jet::ColumnType::Text, .size = 255});
    return design;
}

inline void makeDatabase(const std::string& path, const jet::TableDesign& design,
                         const std::string& password = "MoraKin") {
    jet::Database database = jet::Database::create(path, {.password = password});
    database.createTable(design);
    database.commit();
}

/// A book, a desktop with a program folder and a folder to work in.
class ProjectTest : public testing::Test {
  protected:
    ProjectTest() {
        desktop.folder = folder / "app";
        std::filesystem::create_directory(desktop.folder);
        std::filesystem::copy_file(ZAVRO_TEMPLATES "/grl.mdb", desktop.folder + "/grl.mdb");
    }

    /// The cells of one row, given by column.
    struct Cell {
        int col;
        const char* text;
    };
    static Row row(std::initializer_list<Cell> cells) {
        Row texts(sheet::columnCount);
        for (const Cell& cell : cells)
            texts[static_cast<std::size_t>(cell.col)] = cell.text;
        return texts;
    }

    void setRows(const Rows& rows) {
        book.MSFG.setRows(static_cast<int>(rows.size()) + 1);
        for (std::size_t r = 0; r < rows.size(); ++r)
            for (int col = 0; col < sheet::columnCount; ++col)
                book.MSFG.setText(static_cast<int>(r) + 1, col, rows[r][static_cast<std::size_t>(col)]);
    }
    static Rows rowsOf(const sheet::Grid& grid) {
        Rows rows;
        for (int r = 1; r < grid.Rows(); ++r) {
            rows.emplace_back();
            for (int col = 0; col < grid.Cols(); ++col)
                rows.back().push_back(grid.Text(r, col));
        }
        return rows;
    }
    [[nodiscard]] Rows rows() const { return rowsOf(book.MSFG); }

    /// The records of a project file in their order, field by field; "Null" for Null.
    static Rows records(const std::string& path) {
        dao::Database database = dao::OpenDatabase(path, project::connect);
        dao::Recordset grl = database.OpenRecordset("Grl");
        Rows all;
        for (; !grl.EOF_(); grl.MoveNext()) {
            all.emplace_back();
            for (const char* name : {"Chn", "Oft", "B", "i", "F", "HI", "rl", "Rem"}) {
                const dao::Value value = grl.Fields(name).value();
                all.back().push_back(dao::isNull(value) ? "Null" : dao::toText(value));
            }
        }
        return all;
    }

    /// Makes a project file with these rows.
    std::string projectFile(const std::string& name, const Rows& content) {
        std::string path = folder / name;
        std::filesystem::copy_file(desktop.folder + "/grl.mdb", path);
        sheet::Book other;
        std::swap(other, book);
        setRows(content);
        project::writeRows(book, desktop, path);
        std::swap(other, book);
        return path;
    }

    /// Opens a file through the command.
    void open(const std::string& path) {
        desktop.files.emplace_back(path);
        project::openProject(book, desktop);
    }

    [[nodiscard]] std::vector<std::string> messages() const {
        std::vector<std::string> texts;
        for (const ScriptedDesktop::Box& box : desktop.boxes)
            texts.push_back(box.text);
        return texts;
    }
    /// Names below the work folder, program folder aside.
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            if (entry.path() != desktop.folder) names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    TempFolder folder;
    ScriptedDesktop desktop;
    sheet::Book book;
};
