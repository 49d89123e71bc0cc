#pragma once

#include <string>
#include <vector>

namespace jet {

class Database;

enum class CheckLevel {
    Normal, ///< what every sound file keeps
    Strict, ///< also what Access is careless about: leaked pages, counters, separators. Ours are clean here
};

/// Checks the structure of a whole database, with the changes that are not committed yet: header,
/// definitions, every page owned once, maps, rows, long values, every index against the rows, catalog. One
/// line a fault, "page 55: ...", at most a thousand; empty when all is right. Damage is reported, not thrown.
[[nodiscard]] std::vector<std::string> check(Database& database, CheckLevel level = CheckLevel::Strict);

} // namespace jet
