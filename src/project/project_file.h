#pragma once

#include "dao/dao.h"
#include "desktop/desktop.h"
#include "job_heading.h"
#include "sheet/book.h"

#include <cstdint>
#include <string>
#include <string_view>

// A project file is a Jet database with a password and one table Grl, a record a grid row from the top down:
//   Chn  column 0, always written           Oft  columns 1 to 3 as one signed number
//   B, i, F, HI, rl, Rem  columns 4 to 9, Null for an empty cell

namespace project {

inline constexpr const char* connect = ";pwd=MoraKin";
inline constexpr const char* templateName = "grl.mdb";

/// Rows that a book may get from a file. A larger table is refused before the grid grows.
inline constexpr std::int32_t mostRows = 1'000'000;

/// Cells whose text the file could not take (too long, or no number for a numeric field).
struct Refused {
    int count = 0;
    int row = 0; ///< the first of them
    int col = 0;
    bool heading = false; ///< the heading, since the file's table of that name is another one
};

/// Replaces the records of Grl in the database at `path` by the grid's rows, hiding the grid meanwhile. The
/// file changes as a whole or, when an error is raised, not at all. Cells that it refuses are left out and
/// told.
Refused writeRows(sheet::Book& book, desktop::Desktop& desktop, std::string_view path);

/// The table Grl of an open project file as rows of the grid.
class GrlReader {
  public:
    explicit GrlReader(std::string_view path);

    [[nodiscard]] sheet::Heading heading() { return readHeading(m_database); }
    /// The records that are there, whatever the definition of the table counts.
    [[nodiscard]] std::int32_t count() const { return m_count; }
    /// A sentence when the definition counts otherwise; else empty.
    [[nodiscard]] std::string note() const;
    /// Fills the grid from `firstRow` on, which must have the rows, and sets CurrentHI to the last HI that is
    /// not Null. Offset cells that a record does not fill keep their text. Leaves the cursor on the last row.
    void fill(sheet::Book& book, desktop::Desktop& desktop, int firstRow);

  private:
    dao::Database m_database;
    dao::Recordset m_grl;
    std::int32_t m_stated;
    std::int32_t m_count;
};

} // namespace project
