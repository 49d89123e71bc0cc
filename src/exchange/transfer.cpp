#include "transfer.h"

#include "basic/files.h"
#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "dao/error_numbers.h"
#include "formation_levels.h"
#include "marked_rows.h"
#include "project/save.h"
#include "reading_walk.h"
#include "road_schema.h"
#include "sheet/reduction.h"
#include "survey/adjusted.h"
#include "tools/road_tables.h"
#include "work_copy.h"

#include <optional>
#include <string>
#include <vector>

namespace exchange {

using basic::RuntimeError;
using basic::val;

namespace {

constexpr sheet::Colour missingLevel = sheet::rgb(230, 200, 200);

bool isBlank(const TextBox& box) {
    return basic::trim(box.text).empty();
}

class Transfer {
  public:
    Transfer(project::Book& book, desktop::Desktop& desktop, ExportFrame& frame)
        : m_book(book), m_grid(book.MSFG), m_desktop(desktop), m_frame(frame), m_copy(desktop) {}

    TransferEnd run() {
        try {
            return steps();
        } catch (const RuntimeError& error) {
            fail(error);
        } catch (const MissingLevel& reading) {
            stopAtMissingLevel(reading);
        }
        return TransferEnd::Failed;
    }

  private:
    TransferEnd steps() {
        if (!widthsEntered()) return TransferEnd::Stopped;
        if (m_frame.width == ExportFrame::Total) halveTotalWidth();
        const project::Saved saved = project::saveProject(m_book, m_desktop);
        if (!mayGoOn(saved)) return TransferEnd::Stopped;
        m_copy.open();
        emptyTables();
        fillTables();
        if (m_tally.errors >= 1) {
            refuse();
            return TransferEnd::Refused;
        }
        layOutFolder();
        tellRoad(saved);
        return saved.whole() ? TransferEnd::Done : TransferEnd::DoneInPart;
    }

    bool widthsEntered() {
        if (m_frame.width != ExportFrame::Sides) return true;
        if (val(m_frame.txtLW.text) == 0) return askFor("txtLW", "Enter Left Roadwidth 1st ...");
        if (val(m_frame.txtRW.text) == 0) return askFor("txtRW", "Enter Right Roadwidth 1st ...");
        return true;
    }

    bool askFor(std::string_view control, std::string_view message) {
        m_desktop.messageBox(message);
        m_frame.focus = control;
        return false;
    }

    void halveTotalWidth() {
        m_frame.txtLW.text = basic::format(val(m_frame.txtTW.text) / 2, basic::pattern("0.0##"));
        m_frame.txtRW.text = m_frame.txtLW.text;
    }

    /// No road is made of a book that is in no file. Why, the save has told.
    bool mayGoOn(const project::Saved& saved) {
        if (saved.written()) return true;
        if (saved.end == project::Saved::Cancelled) m_desktop.messageBox("1st save this file...");
        m_frame.Enb();
        return false;
    }

    void tellRoad(const project::Saved& saved) {
        const std::string road = std::to_string(m_tally.records) +
                                 (m_tally.records == 1 ? " reading" : " readings") + " in " + m_folder + '.';
        m_desktop.status(saved.whole() ? road : saved.told + ' ' + road);
        if (val(m_frame.txtLW.text) == 0 && val(m_frame.txtRW.text) == 0)
            m_book.notices.add({.text = "The formation width is 0"});
        if (val(m_frame.txtDDrn.text) == 0) m_book.notices.add({.text = "The gutter has no depth"});
    }

    static void emptyTables() {
        for (const char* statement :
             {"Delete * From Lsect", "Delete * From Csect", "Delete * From Plan", "Delete * From dddd"})
            mdlTools::RoadDb->Execute(statement);
    }

    void fillTables() {
        dao::Recordset cSect = mdlTools::RoadDb->OpenRecordset("CSect");
        dao::Recordset dddd = mdlTools::RoadDb->OpenRecordset("dddd");
        mdlTools::RoadLSect = mdlTools::RoadDb->OpenRecordset("LSect");
        upgradeLSect();
        writeTitleLines(dddd);
        cSect.setIndex("CSO");
        walkRows(cSect);
    }

    /// The defaults of the second and third line are crossed over, and the fourth looks at the third's box:
    /// the road program's users know them so.
    void writeTitleLines(dao::Recordset& dddd) const {
        const ExportFrame& f = m_frame;
        const auto add = [&dddd](const std::optional<std::string>& line) {
            dddd.AddNew();
            if (line) dddd.Fields("dddd").setValue(*line);
            dddd.Update();
        };
        const bool noDivision = isBlank(f.txtDiv);
        add(isBlank(f.txtName) ? "Type here ProjectName - Shri. Dorvan Kessel" : f.txtName.text);
        add(isBlank(f.txtSubDiv) ? "Type here div. - Shri. Dorvan Kessel" : f.txtSubDiv.text);
        add(noDivision ? "Type here SubDn - Shri. Dorvan Kessel" : f.txtDiv.text);
        add(noDivision ? "$Shri. Dorvan Kessel" : "$" + f.txtSurvey.text);
        add(noDivision ? std::nullopt : std::optional<std::string>(""));
    }

    void walkRows(dao::Recordset& cSect) {
        m_desktop.showProgress();
        m_grid.setVisible(false);
        const auto rows = static_cast<float>(m_grid.Rows());
        ReadingWalk(m_book, cSect, *mdlTools::RoadLSect, m_frame, m_tally).run([&](int rowsDone) {
            m_desktop.setProgress(static_cast<float>(rowsDone) * 100 / rows);
        });
        m_grid.setVisible(true);
        m_desktop.hideProgress();
    }

    void refuse() {
        m_desktop.messageBox("There are " + std::to_string(m_tally.errors) +
                             " Errors in your dataentry Please ckeck & then transfer it...");
        m_copy.remove();
        cancelExport(m_desktop, m_frame);
        m_grid.moveTo(m_tally.lowestMarked, sheet::Chainage);
        m_desktop.focusGrid();
        tellMarkedRow(m_grid, m_desktop);
    }

    void layOutFolder() {
        const std::string project = m_book.projectPath();
        const std::string first = firstFolder(project);
        m_copy.close();
        placeRoad(first);
        basic::fileCopy(desktop::programFile(m_desktop, "Rod.dwg"), m_folder + "/Road.dwg");
        basic::fileCopy(desktop::programFile(m_desktop, "Rod1.dwg"), m_folder + "/LRod.dwg");
        copyProject(project, m_folder + "/" + basic::baseName(project));
        m_frame.madeFolder = m_folder;
        m_desktop.messageBox(m_folder + " Folder is Created");
        m_copy.remove();
        m_frame.Enb();
    }

    /// The default folder, then the project's base name.
    std::string firstFolder(const std::string& project) {
        const std::string stem = project.substr(0, project.size() - std::min<std::size_t>(4, project.size()));
        const std::string name = basic::baseName(stem);
        if (name.find_first_not_of('.') == std::string::npos) throw RuntimeError(basic::PathNotFound);
        const std::string usual = basic::nativePath("C:\\Road");
        if (!basic::folderExists(usual)) basic::makeFolder(usual);
        return basic::nativePath(m_book.DefaultFolder) + "/" + name;
    }

    /// Makes the folder with its Road.mdb, under the name with an "X" more for each road that is there
    /// already, one that came a moment ago included.
    void placeRoad(std::string folder) {
        while (!placeRoadIn(folder)) {
            m_desktop.messageBox(folder + " Folder is Allready Exists...");
            folder += "X";
        }
    }

    bool placeRoadIn(const std::string& folder) {
        const std::string road = folder + "/Road.mdb";
        if (basic::fileExists(road)) return false;
        if (!basic::folderExists(folder)) basic::makeFolder(folder);
        m_folder = folder;
        if (m_copy.placeAs(road)) return true;
        m_folder.clear();
        return false;
    }

    /// The project may be its own copy already, in its own folder.
    static void copyProject(const std::string& project, const std::string& copy) {
        const bool same = basic::during(basic::FileAction::Copy, [&] {
            const auto from = files::statusOf(basic::nativePath(project));
            const auto to = files::statusOf(copy);
            return from && to && from->id == to->id;
        });
        if (!same) basic::fileCopy(project, copy);
    }

    void fail(const RuntimeError& error) {
        const bool walking = m_tally.row > 0;
        if (walking) m_grid.moveTo(m_tally.row, sheet::Chainage);
        m_grid.setCellBackColor(sheet::dataError);
        m_grid.setVisible(true);
        const bool duplicate = dao::is(error.number(), dao::EngineError::DuplicateKey);
        if (duplicate || dao::is(error.number(), dao::EngineError::NullKey)) {
            m_grid.setCol(sheet::Chainage);
            m_desktop.messageBox("Chainage " + m_grid.Text() +
                                 (duplicate ? " have some data entry Mistake CHECK IT!!!"
                                            : " have some data Missing CHECK IT!!!"));
            m_desktop.focusGrid();
        } else {
            m_desktop.messageBox(error.shown());
        }
        m_copy.remove();
        cancelExport(m_desktop, m_frame);
        if (walking) tellMarkedRow(m_grid, m_desktop);
        if (!m_folder.empty())
            m_desktop.status(m_folder + " is not complete: " + error.told());
        else if (!error.path().empty())
            m_desktop.status("No road was made: " + error.told());
    }

    void stopAtMissingLevel(const MissingLevel& reading) {
        m_grid.moveTo(m_tally.row, sheet::Chainage);
        m_desktop.messageBox("There is no rl of Chn " + reading.chainage);
        m_grid.setCellBackColor(missingLevel);
        m_grid.setVisible(true);
        cancelExport(m_desktop, m_frame);
    }

    project::Book& m_book;
    sheet::Grid& m_grid;
    desktop::Desktop& m_desktop;
    ExportFrame& m_frame;
    WorkCopy m_copy;
    WalkTally m_tally;
    std::string m_folder; ///< the project folder once it is made
};

std::vector<std::string> levelColumn(const sheet::Grid& grid) {
    std::vector<std::string> levels;
    levels.reserve(static_cast<std::size_t>(grid.Rows()));
    for (int row = 0; row < grid.Rows(); ++row)
        levels.push_back(grid.Text(row, sheet::RLevel));
    return levels;
}

/// Reduces the book, but leaves R.Level. as it is while it holds the adjusted levels of these readings: they
/// are what the user wants to be sent. False when the reduction stopped.
bool reduceForTransfer(project::Book& book, desktop::Desktop& desktop, ExportFrame& frame) {
    sheet::Grid& grid = book.MSFG;
    frame.sendsAdjusted = survey::holdsAdjustedLevels(grid);
    const std::vector<std::string> before = levelColumn(grid);
    const bool reduced = !sheet::reduceLevels(book, desktop).stopped();
    survey::Runs runs(grid);
    int others = 0;
    for (int row = 2; row < grid.Rows(); ++row) {
        const std::string& level = before[static_cast<std::size_t>(row)];
        if (frame.sendsAdjusted)
            grid.setText(row, sheet::RLevel, level);
        else if (!level.empty() && level != grid.Text(row, sheet::RLevel))
            ++others;
    }
    if (frame.sendsAdjusted)
        desktop.status("Sends adjusted levels");
    else if (others > 0 && reduced && survey::hasClosedSection(runs))
        desktop.status("Sends the levels of the readings: " + std::to_string(others) +
                       (others == 1 ? " level" : " levels") +
                       " in R.Level. belonged to other readings or known levels");
    return reduced;
}

} // namespace

bool showExportFrame(project::Book& book, desktop::Desktop& desktop, ExportFrame& frame) {
    if (book.MSFG.Rows() < 3) {
        desktop.messageBox("1st Enter Field Book Data...");
        return false;
    }
    frame.takeHeading(book.JobHeading);
    frame.Dsb();
    const bool reduced = reduceForTransfer(book, desktop, frame);
    frame.visible = true;
    return reduced;
}

TransferEnd transfer(project::Book& book, desktop::Desktop& desktop, ExportFrame& frame) {
    if (frame.chkFRL) {
        const bool sent = CFrl(book, desktop, frame);
        frame.Enb();
        return sent ? TransferEnd::Sent : TransferEnd::Failed;
    }
    return Transfer(book, desktop, frame).run();
}

void cancelExport(desktop::Desktop& desktop, ExportFrame& frame) {
    desktop.hideProgress();
    frame.Enb();
}

} // namespace exchange
