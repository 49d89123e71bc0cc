#pragma once

#include "dao/dao.h"
#include "field_book.h"
#include "jet/database.h"
#include "project/load.h"
#include "project/project_commands.h"
#include "project/project_file.h"
#include "project/recovery.h"
#include "project/save.h"
#include "scripted_desktop.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

/// Rows of the grid, each as its texts from column 0 on with commas between them.
using Rows = std::vector<std::string>;

/// A book that is known by the remark of its one row.
inline Rows remark(const std::string& text) {
    return {",,,,,,,,," + text};
}

/// A design of Grl whose fields B to rl are of `reading`.
inline jet::TableDesign grlDesign(jet::ColumnType reading = jet::ColumnType::Text) {
    using jet::ColumnType;
    jet::TableDesign design{"Grl",
                            {{.name = "Chn", .type = ColumnType::Text, .size = 25, .allowZeroLength = true},
                             {.name = "Oft", .type = ColumnType::Double}},
                            {}};
    for (const char* name : {"B", "i", "F", "HI", "rl"})
        design.columns.push_back(
            {.name = name, .type = reading, .size = reading == ColumnType::Text ? 20 : 0});
    design.columns.push_back({.name = "Rem", .type = ColumnType::Text, .size = 255});
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

    void setRows(const Rows& rows) { keyRows(book.MSFG, rows); }
    static Rows rowsOf(const sheet::Grid& grid) { return splitAt(shownRows(grid), '|'); }
    [[nodiscard]] Rows rows() const { return rowsOf(book.MSFG); }

    /// The records of a project file in their order, each as its fields Chn, Oft, B, i, F, HI, rl, Rem with
    /// commas between them: nothing for Null, '' for an empty text, and no comma behind the last one.
    static Rows records(const std::string& path) {
        dao::Database database = dao::OpenDatabase(path, project::connect);
        dao::Recordset grl = database.OpenRecordset("Grl");
        Rows all;
        for (; !grl.EOF_(); grl.MoveNext()) {
            std::string& record = all.emplace_back();
            std::string commas;
            for (const char* name : {"Chn", "Oft", "B", "i", "F", "HI", "rl", "Rem"}) {
                const dao::Value value = grl.Fields(name).value();
                const std::string text = dao::toText(value);
                if (!dao::isNull(value)) record += std::exchange(commas, {}) + (text.empty() ? "''" : text);
                commas += ',';
            }
        }
        return all;
    }
    /// The remark in the first record.
    static std::string remarkIn(const std::string& path) { return splitAt(records(path).at(0), ',').at(7); }

    /// Makes a project file with these rows.
    std::string projectFile(const std::string& name, const Rows& content) {
        std::filesystem::copy_file(desktop.folder + "/grl.mdb", folder / name,
                                   std::filesystem::copy_options::overwrite_existing);
        project::Book made;
        keyRows(made.MSFG, content);
        project::writeRows(made, desktop, folder / name);
        return folder / name;
    }

    /// Runs a command with these choices and answers; returns its boxes, each as text, buttons and title.
    using Command = std::function<void(project::Book&, desktop::Desktop&)>;
    std::vector<std::string> run(const Command& command, std::deque<std::optional<std::string>> files = {},
                                 std::deque<desktop::Answer> answers = {}) {
        desktop.boxes.clear();
        desktop.files = std::move(files);
        desktop.answers = std::move(answers);
        command(book, desktop);
        constexpr const char* buttons[] = {"", " [Yes No]", " [Yes No Cancel]"};
        std::vector<std::string> shown;
        for (const ScriptedDesktop::Box& box : desktop.boxes)
            shown.push_back(box.text + buttons[static_cast<int>(box.buttons)] + box.title);
        return shown;
    }
    std::vector<std::string> open(const std::string& path) { return run(project::openProject, {path}); }
    /// The names of the files in the caption, in CurrentFile and in the dialog, the cursor, and what is
    /// unusual.
    [[nodiscard]] std::string state() const {
        std::string text;
        for (const std::string& path : {book.projectPath(), book.CurrentFile, book.FileName})
            text += std::filesystem::path(path).filename().string() + ' ';
        text += std::to_string(book.MSFG.Row()) + ',' + std::to_string(book.MSFG.Col());
        return text + (book.BookChanged ? " changed" : "") + (book.MSFG.Visible() ? "" : " hidden") +
               (desktop.progressShown ? " progress" : "");
    }
    /// The book that the next start of the program offers, and offers no more after this; none: no rows.
    Rows recovered() const {
        ScriptedDesktop next;
        next.folder = desktop.folder;
        next.answers = {desktop::Answer::Yes};
        project::Book found;
        project::Recovery recovery(found, next);
        recovery.offer();
        recovery.discard();
        return next.boxes.empty() ? Rows() : rowsOf(found.MSFG);
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
    project::Book book;
};
