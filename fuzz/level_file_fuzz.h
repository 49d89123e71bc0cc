#pragma once

#include "exchange/digital_levels.h"

#include "basic/runtime_error.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/// Any bytes behind `start` give lines of levels or are refused; each line gives rows that begin with its
/// start.
inline int checkLevelFile(std::string start, const std::uint8_t* data, std::size_t size) {
    start.append(data, data + size);
    const auto form = exchange::PointForm::parse("KKMMM+oo");
    exchange::LevelFile file;
    try {
        file = exchange::readLevelFile(start);
    } catch (const basic::RuntimeError&) {
        return 0;
    }
    for (const exchange::LevelLine& line : file.lines) {
        if (line.points.empty() || line.points.front().kind != exchange::LevelPoint::Kind::Start)
            std::abort();
        if (exchange::levelRows(line, *form).size() != line.points.size()) std::abort();
        if (exchange::describe(line).empty()) std::abort();
    }
    return 0;
}
