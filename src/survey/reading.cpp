#include "reading.h"

#include "sections.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "sheet/book.h"

namespace survey {
namespace {

/// Reads a cell that must be a number or empty; false when it is neither.
bool readNumber(const std::string& text, double& number) {
    if (text.empty()) return true;
    if (!basic::isNumber(text)) return false;
    number = basic::val(text);
    return true;
}

} // namespace

Reading readRow(const sheet::Grid& grid, int row) {
    Reading reading;
    if (const std::string& text = grid.Text(row, sheet::Chainage); !text.empty())
        reading.chainage = chainageMetres(text).value_or(nothing);
    if (const std::string& text = grid.Text(row, sheet::Remark); !text.empty())
        if (const auto known = sheet::knownLevelIn(text)) reading.known = known->level;
    try {
        const std::string& foreSight = grid.Text(row, sheet::ForeSight);
        reading.kind = sheet::sightAt(grid, row).kind;
        if (reading.kind == sheet::RowKind::None && !foreSight.empty() && !basic::isNumber(foreSight))
            reading.kind = sheet::RowKind::ChangePoint;
        switch (reading.kind) {
        case sheet::RowKind::Start:
            reading.readable = readNumber(grid.Text(row, sheet::RLevel), reading.sight) &&
                               readNumber(grid.Text(row, sheet::BackSight), reading.backSight);
            if (reading.readable && !grid.Text(row, sheet::RLevel).empty()) reading.known = reading.sight;
            break;
        case sheet::RowKind::Intermediate:
            reading.readable = readNumber(grid.Text(row, sheet::InterSight), reading.sight);
            break;
        case sheet::RowKind::ChangePoint:
            reading.readable = readNumber(foreSight, reading.sight) &&
                               readNumber(grid.Text(row, sheet::BackSight), reading.backSight);
            break;
        case sheet::RowKind::None:
            break;
        }
    } catch (const basic::RuntimeError&) { // a number beyond single precision
        reading.readable = false;
        reading.kind = row == 1                                    ? sheet::RowKind::Start
                       : grid.Text(row, sheet::InterSight).empty() ? sheet::RowKind::ChangePoint
                                                                   : sheet::RowKind::Intermediate;
    }
    return reading;
}

} // namespace survey
