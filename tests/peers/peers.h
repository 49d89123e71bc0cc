#pragma once

#include "jet/table.h"

#include <optional>
#include <string>
#include <vector>

namespace jet {
class Database;
}

/// A value as a reader prints it.
struct Printed {
    bool null = false;
    std::string text;
};
using PrintedRows = std::vector<std::vector<Printed>>;

struct PrintedTable {
    std::string name;
    PrintedRows rows;
};

/// A reader of such files that is not ours.
enum class Peer { MdbExport, MdbReader };
[[nodiscard]] const char* nameOf(Peer peer);
[[nodiscard]] bool installed(Peer peer);

/// The user tables of a file as `peer` reads them; `tables` are the names that we find.
[[nodiscard]] std::vector<PrintedTable> readWith(Peer peer, const std::string& path,
                                                 const std::vector<std::string>& tables);
/// A table as our own dump prints it.
[[nodiscard]] PrintedRows ourRows(const jet::Table& table);

/// Both print the same value of the column. Numbers may differ in the last digit that the peer prints.
[[nodiscard]] bool same(const jet::Column& column, const Printed& ours, const Printed& theirs, Peer peer);
