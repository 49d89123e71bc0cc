#include "formation_levels.h"

#include "basic/files.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "dao/dao.h"
#include "road_schema.h"
#include "sheet/cells.h"
#include "sheet/sight.h"
#include "tools/chainage.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace exchange {

using dao::Value;
using sheet::Grid;

namespace {

/// The chosen road database with LSect and CSect on their indexes. What was saved reaches the file when the
/// database is closed, which must be done after an error too.
struct RoadFile {
    explicit RoadFile(std::string_view path)
        : database(dao::OpenDatabase(basic::nativePath(path), roadConnect)) {
        lSect.setIndex("Chn");
        cSect.setIndex("CSO");
    }

    dao::Database database;
    dao::Recordset lSect{database.OpenRecordset("LSect")};
    dao::Recordset cSect{database.OpenRecordset("CSect")};
};

void sendRow(const Grid& grid, int row, RoadFile& road) {
    const double level = sheet::cellValue(grid, row, sheet::RLevel);
    Value chainage = mdlTools::cleanChainage(grid.Text(row, sheet::Chainage));

    road.lSect.Seek("=", {chainage});
    if (road.lSect.NoMatch()) {
        road.lSect.AddNew();
        road.lSect.Fields("Chn").setValue(chainage);
        road.lSect.Fields("Frl").setValue(level);
        road.lSect.Fields("Grl").setValue(level);
    } else {
        chainage = road.lSect.Fields("Chn").value();
        road.lSect.Edit();
        road.lSect.Fields("Frl").setValue(level);
    }
    road.lSect.Update();

    // A row without an offset gives Nulls, which the engine refuses as a key.
    const std::optional<sheet::Point> point = sheet::pointAt(grid, row, sheet::formationRule);
    const Value side = point ? Value(std::string(1, point->side())) : Value();
    const Value offset = point ? Value(point->offset) : Value();
    road.cSect.Seek("=", {chainage, side, offset});
    const bool isNew = road.cSect.NoMatch();
    if (isNew)
        road.cSect.AddNew();
    else
        road.cSect.Edit();
    road.cSect.Fields("Chn").setValue(chainage);
    road.cSect.Fields("Side").setValue(side);
    road.cSect.Fields("Oft").setValue(offset);
    road.cSect.Fields("Rmk").setValue(isNew ? "FF" : "GF");
    road.cSect.Fields("Frl").setValue(level);
    road.cSect.Update();
}

void updateCentre(const Grid& grid, int row, RoadFile& road, const Value& chainage) {
    const double level = sheet::cellValue(grid, row, sheet::RLevel);
    const auto update = [level](dao::Recordset& table) {
        if (table.NoMatch()) return;
        table.Edit();
        table.Fields("Frl").setValue(level);
        table.Update();
    };
    road.lSect.Seek("=", {chainage});
    update(road.lSect);
    road.cSect.Seek("=", {chainage, std::string("C"), 0.0});
    update(road.cSect);
}

void updateSide(const Grid& grid, int row, RoadFile& road, const Value& chainage, const sheet::Point& point) {
    const std::string side(1, point.side());
    road.cSect.Seek("=", {chainage, side, point.offset});
    if (road.cSect.NoMatch()) {
        road.cSect.AddNew();
        road.cSect.Fields("Oft").setValue(point.offset);
        road.cSect.Fields("Chn").setValue(chainage);
        road.cSect.Fields("Side").setValue(side);
    } else {
        road.cSect.Edit();
    }
    road.cSect.Fields("Frl").setValue(grid.Text(row, sheet::RLevel));
    road.cSect.Fields("calc").setValue(false);
    road.cSect.Update();
}

void updateRow(const Grid& grid, int row, RoadFile& road) {
    const Value chainage = mdlTools::cleanChainage(grid.Text(row, sheet::Chainage));
    if (basic::trim(grid.Text(row, sheet::Center)) == "0") updateCentre(grid, row, road, chainage);
    const std::optional<sheet::Point> point = sheet::pointAt(grid, row, sheet::formationUpdateRule);
    if (point && point->column != sheet::Center) updateSide(grid, row, road, chainage, *point);
}

/// Which rows beside the centre line had the last word on the long section at their chainage.
class SideLevels {
  public:
    explicit SideLevels(const Grid& grid) : m_grid(grid) {}

    void sent(int row) {
        const std::string chainage = mdlTools::cleanChainage(m_grid.Text(row, sheet::Chainage));
        const auto point = sheet::pointAt(m_grid, row, sheet::formationRule);
        m_rows[chainage] = point && point->column != sheet::Center ? row : 0;
    }
    void tell(sheet::Notices& notices) const {
        std::vector<int> rows;
        for (const auto& [chainage, row] : m_rows)
            if (row > 0) rows.push_back(row);
        std::ranges::sort(rows);
        for (const int row : rows) {
            const auto point = sheet::pointAt(m_grid, row, sheet::formationRule);
            notices.add({row, -1,
                         "the long section at " + m_grid.Text(row, sheet::Chainage) +
                             " got the formation level " + m_grid.Text(row, sheet::RLevel) + " of " +
                             point->side() + ' ' + m_grid.Text(row, point->column)});
        }
    }

  private:
    const Grid& m_grid;
    std::unordered_map<std::string, int> m_rows; ///< by chainage; 0: a centre's level
};

/// Opens the road database, works through the rows and closes it again; an error ends the rows, not the
/// closing. True when every level is in the file.
template <typename Rows>
bool sendInto(std::string_view path, desktop::Desktop& desktop, Rows&& rows) {
    try {
        RoadFile road(path);
        std::string failure;
        int sent = 0;
        try {
            rows(road, sent);
        } catch (const basic::RuntimeError& error) {
            failure = ", then: " + error.told();
        }
        road.database.Close();
        desktop.status(std::to_string(sent) + (sent == 1 ? " formation level" : " formation levels") +
                       " sent to " + std::string(path) + (failure.empty() ? "." : failure));
        return failure.empty();
    } catch (const basic::RuntimeError& error) {
        desktop.status("No formation levels sent: " + error.told());
        return false;
    }
}

} // namespace

bool CFrl(sheet::Book& book, desktop::Desktop& desktop, ExportFrame& frame) {
    const Grid& grid = book.MSFG;
    SideLevels sideLevels(grid);
    const bool sentAll = sendInto(frame.lblProj, desktop, [&](RoadFile& road, int& sent) {
        desktop.showProgress();
        for (int row = 1; row < grid.Rows(); ++row) {
            if (!sheet::isGround(grid, row, sheet::formationRule)) continue;
            sendRow(grid, row, road);
            sideLevels.sent(row);
            ++sent;
            desktop.setProgress(static_cast<float>(row) * 100 / static_cast<float>(grid.Rows()));
        }
    });
    sideLevels.tell(book.notices);
    desktop.hideProgress();
    frame.visible = false;
    return sentAll;
}

bool updateFormationLevels(const Grid& grid, desktop::Desktop& desktop, const ExportFrame& frame) {
    const bool sentAll = sendInto(frame.lblProj, desktop, [&](RoadFile& road, int& sent) {
        for (int row = 1; row < grid.Rows(); ++row) {
            if (!sheet::isGround(grid, row, sheet::formationUpdateRule)) continue;
            updateRow(grid, row, road);
            ++sent;
        }
    });
    desktop.hideProgress();
    return sentAll;
}

} // namespace exchange
