#include "formation_levels.h"

#include "basic/files.h"
#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "dao/dao.h"
#include "road_schema.h"
#include "sheet/book.h"
#include "sheet/cells.h"
#include "tools/chainage.h"

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

struct Point {
    Value side;
    Value offset;
};

/// Centre before left before right; Nulls when none is filled, which the engine refuses as a key.
Point pointOf(const Grid& grid, int row) {
    struct Choice {
        int col;
        const char* side;
    };
    for (auto [col, side] : {Choice{sheet::Center, "C"}, Choice{sheet::Left, "L"}, Choice{sheet::Right, "R"}})
        if (const std::string& text = grid.Text(row, col); !text.empty())
            return {std::string(side), basic::val(text)};
    return {};
}

bool isReading(const Grid& grid, int row, std::string_view chainage) {
    return !chainage.empty() && basic::upper(chainage) != "CP" && !grid.Text(row, sheet::RLevel).empty();
}

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

    const Point point = pointOf(grid, row);
    road.cSect.Seek("=", {chainage, point.side, point.offset});
    const bool isNew = road.cSect.NoMatch();
    if (isNew)
        road.cSect.AddNew();
    else
        road.cSect.Edit();
    road.cSect.Fields("Chn").setValue(chainage);
    road.cSect.Fields("Side").setValue(point.side);
    road.cSect.Fields("Oft").setValue(point.offset);
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

void updateSide(const Grid& grid, int row, RoadFile& road, const Value& chainage, int col, const char* side) {
    const double offset = basic::val(grid.Text(row, col));
    road.cSect.Seek("=", {chainage, std::string(side), offset});
    if (road.cSect.NoMatch()) {
        road.cSect.AddNew();
        road.cSect.Fields("Oft").setValue(offset);
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
    if (!grid.Text(row, sheet::Left).empty())
        updateSide(grid, row, road, chainage, sheet::Left, "L");
    else if (!grid.Text(row, sheet::Right).empty())
        updateSide(grid, row, road, chainage, sheet::Right, "R");
}

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
            failure = ", then: " + error.description();
        }
        road.database.Close();
        desktop.status(std::to_string(sent) + (sent == 1 ? " formation level" : " formation levels") +
                       " sent to " + std::string(path) + (failure.empty() ? "." : failure));
        return failure.empty();
    } catch (const basic::RuntimeError& error) {
        desktop.status("No formation levels sent: " + error.description());
        return false;
    }
}

} // namespace

bool CFrl(const Grid& grid, desktop::Desktop& desktop, ExportFrame& frame) {
    const bool sentAll = sendInto(frame.lblProj, desktop, [&](RoadFile& road, int& sent) {
        desktop.showProgress();
        for (int row = 1; row < grid.Rows(); ++row) {
            if (!isReading(grid, row, grid.Text(row, sheet::Chainage))) continue;
            sendRow(grid, row, road);
            ++sent;
            desktop.setProgress(static_cast<float>(row) * 100 / static_cast<float>(grid.Rows()));
        }
    });
    desktop.hideProgress();
    frame.visible = false;
    return sentAll;
}

bool updateFormationLevels(const Grid& grid, desktop::Desktop& desktop, const ExportFrame& frame) {
    const bool sentAll = sendInto(frame.lblProj, desktop, [&](RoadFile& road, int& sent) {
        for (int row = 1; row < grid.Rows(); ++row) {
            if (!isReading(grid, row, basic::trim(grid.Text(row, sheet::Chainage)))) continue;
            updateRow(grid, row, road);
            ++sent;
        }
    });
    desktop.hideProgress();
    return sentAll;
}

} // namespace exchange
