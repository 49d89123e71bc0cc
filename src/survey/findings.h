#pragma once

#include "finding.h"
#include "runs.h"

#include "sheet/grid.h"

#include <cstddef>
#include <vector>

namespace survey {

/// What looks wrong in a book: a list that follows the grid as its listener. A changed row costs its section
/// and those around it, and a pass over plain numbers where a level of the whole book depends on it.
class Findings final : public sheet::GridListener {
  public:
    enum class Cursor { Ignore, Follow };

    /// `runs` follow the same grid and were added to its listeners before. With Cursor::Follow a row that is
    /// being keyed is judged when the cursor has left it. `staff` is the staff's length in metres.
    Findings(const sheet::Grid& grid, Runs& runs, Cursor cursor, double staff = usualStaff);
    static constexpr double usualStaff = 5;

    void setStaff(double metres);
    [[nodiscard]] double staff() const { return m_staff; }

    /// All findings by row; what concerns the end of the run stands last.
    [[nodiscard]] const std::vector<Finding>& all();
    /// Grows when the list may have changed.
    [[nodiscard]] std::size_t version();

    void textChanged(int row, int col, const std::string& before) override;
    void rowsInserted(int row, int count, sheet::Marks) override;
    void rowsRemoved(int row, const sheet::RemovedRows& before, sheet::Marks) override;

  private:
    /// A row as the ground sees it.
    struct Place {
        double chainage = nothing; ///< NaN: no ground
        double offset = nothing;   ///< signed; NaN: the row names none
        double sight = nothing;    ///< NaN: the level is that of the cell
        double cell = nothing;     ///< R.Level.
        bool isGround() const { return chainage == chainage; }
        bool hasLevel() const { return sight == sight || cell == cell; }
    };
    struct Station {
        double chainage;
        int row;
        friend auto operator<=>(const Station&, const Station&) = default;
    };
    struct AtChainage {
        double chainage;
        Finding finding;
    };

    void refresh();
    void judgeAll();
    void judgeTouched();
    [[nodiscard]] Place read(int row) const;
    void judgeRow(int row);
    void judgeAgain(int row);
    void judgeEnds();
    void judgeCursor();
    void setPlace(int row);
    void setBreak(int row, bool broken);
    void setStart(int row);
    [[nodiscard]] int groundAbove(int row) const;
    [[nodiscard]] int groundBelow(int row) const;
    [[nodiscard]] std::vector<int> pointsFrom(int start) const;
    [[nodiscard]] double offsetOf(int row, int start) const;
    void judgeShape(std::size_t from, std::size_t to);
    void judgeChainage(double chainage);
    void judgeSteps();
    void judgeRun();
    void judgeLevels();
    void collect();
    [[nodiscard]] double keyedChainage() const;
    [[nodiscard]] Finding finding(int row, FindingKind kind, FindingRule rule, std::string text,
                                  int other = 0) const;
    [[nodiscard]] Finding about(int row, int other, FindingRule rule, std::string text) const;
    [[nodiscard]] int keyedRow() const { return m_cursor == Cursor::Follow ? m_grid.Row() : 0; }

    const sheet::Grid& m_grid;
    Runs& m_runs;
    Cursor m_cursor;
    double m_staff;
    std::vector<Place> m_places;       // by row
    std::vector<double> m_heights;     // by row: that of the instrument by the R.Level. cell; NaN: none
    std::vector<int> m_starts;         // first rows of sections, ascending
    std::vector<Station> m_byChainage; // the same by chainage
    std::vector<int> m_breaks;         // rows over which levels cannot be compared
    std::vector<int> m_touched;
    std::vector<double> m_dirtyChainages;
    std::vector<int> m_dirtyRows;
    std::vector<Finding> m_rowFindings;
    std::vector<Finding> m_shapeFindings;
    std::vector<AtChainage> m_chainageFindings;
    std::vector<Finding> m_stepFindings;
    std::vector<Finding> m_runFindings;
    std::vector<Finding> m_levelFindings;
    std::vector<Finding> m_all;
    static constexpr double nowhere = -1e300;
    double m_keyedChainage = nowhere; ///< of the section that is keyed
    int m_keyedBefore = -1;           ///< keyed row when the list was last brought into step
    int m_lastRead = 0;
    std::size_t m_runsVersion = 0;
    std::size_t m_version = 0;
    bool m_stale = true;
    bool m_stepsChanged = true;
    bool m_levelsChanged = true;
};

} // namespace survey
