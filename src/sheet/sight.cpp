#include "sight.h"

#include "cells.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"

#include <algorithm>

namespace sheet {

Sight sightAt(const Grid& grid, int row) {
    if (row == 1) return {RowKind::Start, 0};
    if (!grid.Text(row, InterSight).empty())
        return {RowKind::Intermediate, basic::cSng(cellValue(grid, row, InterSight))};
    const float foreSight = basic::cSng(cellValue(grid, row, ForeSight));
    return {foreSight == 0 ? RowKind::None : RowKind::ChangePoint, foreSight};
}

float heightAbove(double level, double backSight) {
    return basic::cSng(level + backSight);
}

std::optional<Point> pointAt(const Grid& grid, int row, const GroundRule& rule) {
    const auto last = std::find_if(rule.columns.rbegin(), rule.columns.rend(),
                                   [&](Column col) { return !grid.Text(row, col).empty(); });
    if (last == rule.columns.rend()) return std::nullopt;
    return Point{*last, cellValue(grid, row, *last)};
}

bool isGround(const Grid& grid, int row, const GroundRule& rule) {
    std::string_view chainage = grid.Text(row, Chainage);
    if (rule.blankIsEmpty) chainage = basic::trim(chainage);
    if (chainage.empty() || basic::sameText(chainage, "CP")) return false;
    if (rule.needsLevel && grid.Text(row, RLevel).empty()) return false;
    if (!rule.takesTbm && grid.Text(row, Remark) == "TBM") return false;
    return !isBenchMark(grid, row);
}

std::optional<KnownLevel> knownLevelIn(std::string_view remark) {
    const std::size_t sign = remark.rfind('=');
    if (sign == std::string_view::npos) return std::nullopt;
    const std::string_view number = remark.substr(sign + 1);
    if (!basic::isNumber(number)) return std::nullopt;
    try {
        return KnownLevel{basic::trim(remark.substr(0, sign)), basic::val(number)};
    } catch (const basic::RuntimeError&) {
        return std::nullopt; // beyond all numbers, so no level
    }
}

bool isBenchMark(const Grid& grid, int row) {
    const bool hasOffset =
        std::ranges::any_of(fileRule.columns, [&](Column col) { return !grid.Text(row, col).empty(); });
    return !hasOffset && knownLevelIn(grid.Text(row, Remark)).has_value();
}

} // namespace sheet
