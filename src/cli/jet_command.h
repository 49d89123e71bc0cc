#pragma once

#include "exit_status.h"
#include "table_dump.h"

#include <iosfwd>
#include <string>

namespace cli {

struct JetOptions {
    std::string file;
    std::string table{}; ///< empty = all user tables
    std::string password{};
    std::string schema{}; ///< of jetCreate: path of a text schema; "-" is standard input
    DumpForm form = DumpForm::Csv;
    bool strict = false; ///< of jetCheck
};

// Each says on `err` what went wrong. A file is never changed by the first three.

/// The layout as text that jetCreate understands.
ExitStatus jetSchema(const JetOptions& options, std::ostream& out, std::ostream& err);
/// The rows; with several tables each is led by a line "# name" (CSV) and tables are apart by a blank line.
ExitStatus jetDump(const JetOptions& options, std::ostream& out, std::ostream& err);
/// One line for each fault of the file's structure, then one for each note; Failed when there is a fault.
ExitStatus jetCheck(const JetOptions& options, std::ostream& out, std::ostream& err);
/// Makes a new Jet 4 database; two runs with one schema make the same bytes.
ExitStatus jetCreate(const JetOptions& options, std::istream& in, std::ostream& err);

} // namespace cli
