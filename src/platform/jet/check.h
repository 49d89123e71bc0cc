#pragma once

#include <string>
#include <vector>

namespace jet {

class Database;

enum class CheckLevel {
    Normal, ///< what every sound file keeps
    Strict, ///< also what Access is careless about: leaked pages, counters, separators, the reach of the map
            ///< of free pages. Ours are clean here
};

/// Checks the structure of a whole database, with the changes that are not committed yet: header,
/// definitions, every page owned once, maps, rows, long values, every index against the rows, catalog. One
/// line a fault, "page 55: ...", at most a thousand; empty when all is right. Damage is reported, not thrown.
/// `notes` takes what is wrong and does no harm, since nothing relies on it: at the normal level the count of
/// rows in a definition.
[[nodiscard]] std::vector<std::string> check(Database& database, CheckLevel level = CheckLevel::Strict,
                                             std::vector<std::string>* notes = nullptr);

} // namespace jet
