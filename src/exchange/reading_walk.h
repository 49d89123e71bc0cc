#pragma once

#include "dao/dao.h"
#include "export_frame.h"
#include "ground_walk.h"
#include "sheet/book.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace exchange {

/// A reading that reached its record without a level; the walk tests for it beforehand.
struct MissingLevel {
    std::string chainage;
};

/// How far a walk came.
struct WalkTally {
    int row = 0;          ///< the row being worked; 0 before and after the walk
    int records = 0;      ///< readings taken
    int errors = 0;       ///< rows left out
    int lowestMarked = 0; ///< 0 for none
};

/// The fields of a recordset, each looked up when it is first wanted.
class FieldsByName {
  public:
    explicit FieldsByName(dao::Recordset& records) : m_records(records) {}
    /// `name` must last; the same literal is found by its place. 3265 when there is no such field.
    dao::Field& operator[](const char* name);

  private:
    dao::Recordset& m_records;
    std::vector<std::pair<const char*, dao::Field>> m_found; ///< in the order in which they were wanted
    std::size_t m_next = 0;                                  ///< behind the one that was wanted last
};

/// Turns the rows of the book into records: one CSect record for each staff reading, one LSect record for
/// each centre reading. A row whose point is there already or whose level is missing is coloured in its
/// chainage cell, counted and left out; a good row becomes white. Chainages without "-" are written anew in
/// their cells, which is among the notices. Cost: one index search a reading.
class ReadingWalk {
  public:
    /// cSect must stand on its index CSO.
    ReadingWalk(sheet::Book& book, dao::Recordset& cSect, dao::Recordset& lSect, const ExportFrame& frame,
                WalkTally& tally);

    /// Works all rows from 1 on; `chainageDone` is told the rows done after each chainage. The engine's
    /// errors pass, with the tally's row on the reading that raised them.
    void run(const std::function<void(int rowsDone)>& chainageDone);

  private:
    void normaliseChainage();
    [[nodiscard]] bool skipped() const;
    void writeChainage();
    void writeReading();
    void reject();
    void addCrossRecord(const std::string& chainage);
    void addLongRecord(const std::string& chainage);
    [[nodiscard]] const std::string& text(int col) const { return m_grid.Text(m_row, col); }

    sheet::Grid& m_grid;
    sheet::Notices& m_notices;
    dao::Recordset& m_cSect;
    dao::Recordset& m_lSect;
    FieldsByName m_cross;
    FieldsByName m_long;
    std::vector<dao::Value> m_sought{std::string(), std::string(), 0.0}; ///< chainage, side, offset
    const ExportFrame& m_frame;
    WalkTally& m_tally;
    int& m_row;
    GroundWalk m_walk;
};

} // namespace exchange
