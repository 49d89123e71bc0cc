#pragma once

#include "reading.h"
#include "run_section.h"

#include "sheet/grid.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// Level runs: the stretches between known levels, what they miss, and the levels that close on the marks.
// Everything is worked in double precision from the readings; the book is never changed. Metres, if not said.

namespace survey {

enum class Method { Setups, Distance };

/// How a run is judged and adjusted.
struct Closing {
    Tolerance tolerance;
    Method method = Method::Setups;
    std::vector<double> lengthsKm;             ///< typed lengths by section; 0 or missing: none
    std::vector<std::pair<int, double>> known; ///< rows with known levels beside those of the book

    friend bool operator==(const Closing&, const Closing&) = default;
};

/// The levels of one sighted point.
struct RowLevel {
    double raw;
    double correction; ///< adjusted less raw
    [[nodiscard]] double adjusted() const { return raw + correction; }
};

/// Two marks of one name with different levels, or two known levels on one point: the first holds.
struct Contradiction {
    int row;
    int firstRow;
    std::string name;
    double level, firstLevel;
};

/// The runs of one book, which it follows as a listener of its grid: each changed row costs the set-up that
/// it lies in, and asking afterwards costs a few additions a set-up, however many rows there are.
class Runs final : public sheet::GridListener {
  public:
    explicit Runs(const sheet::Grid& grid, Closing closing = {});

    void setClosing(Closing closing);
    [[nodiscard]] const Closing& closing() const { return m_closing; }

    void textChanged(int row, int col, const std::string& before) override;
    void rowsInserted(int row, int count, sheet::Marks) override;
    void rowsRemoved(int row, const sheet::RemovedRows& before, sheet::Marks) override;

    /// Sections, checks and the tail, from the top down.
    [[nodiscard]] const std::vector<RunSection>& sections();
    [[nodiscard]] const std::vector<Contradiction>& contradictions();
    /// The row whose B.S., F.S. or level is no number, so that the run ends before it; 0 for none.
    [[nodiscard]] int stoppedAt();
    [[nodiscard]] int lastSight(); ///< the last row with a sight up to there; 1 when there is none
    /// Nothing for a row without a readable sight, and from the stop on.
    [[nodiscard]] std::optional<RowLevel> levelAt(int row) { return levelAt(row, m_closing.method); }
    [[nodiscard]] std::optional<RowLevel> levelAt(int row, Method method);
    /// The raw level of a sighted row, also behind the stop, where only differences within a set-up hold.
    [[nodiscard]] double rawLevel(int row);
    /// The last row in which anything was read, also behind the stop; 0 for none.
    [[nodiscard]] int lastRead();
    /// Grows with every change of a reading, a known level or the closing.
    [[nodiscard]] std::size_t version();
    /// The height of the instrument that `row` was sighted from, and the number of that set-up, from 1 on.
    [[nodiscard]] int setupOf(int row);
    /// A position of the instrument: what was sighted from it, up to and with the change point that ends it.
    struct Setup {
        int firstRow, lastRow;
        double height; ///< raw, of the instrument
    };
    [[nodiscard]] std::size_t setups();            ///< before the stop
    [[nodiscard]] Setup setup(std::size_t number); ///< 0 and on
    [[nodiscard]] const Reading& reading(int row);

  private:
    /// The end of a set-up: the starting row or a change point.
    struct Turn {
        int row;
        double firstChainage =
            nothing; ///< of the rows sighted from the set-up that ends here; NaN: none has one
        double lastChainage = nothing;
        double level = 0;  ///< raw
        double height = 0; ///< of the instrument behind it
        double chainage = nothing;
        double distance = 0; ///< along the run from the start
        int missing = 0;     ///< set-ups up to here that sight no chainage
    };
    struct Mark {
        int row;
        int setup; ///< that it is the last sight of; 0 for the starting row
        double raw;
        double known;
        double distance;
        bool closes;
        std::string name;
    };
    struct Stretch {          // between closing marks
        std::size_t from, to; // indices into m_marks
        double misclosure;    // 0 for the tail
        bool hasDistances;
    };

    void touch(int row);
    void refresh();
    void readAll();
    void reread(int row);
    void rescan(std::size_t turn);
    void sumTurns();
    void findLastSight();
    void collectMarks();
    void addMark(int row, double known);
    void settleNames();
    void makeSections();
    void addSection(std::size_t from, std::size_t to);
    void addCheck(std::size_t from, const Mark& check);
    void addTail(std::size_t from);
    [[nodiscard]] std::optional<double> chainageLength(const Mark& from, const Mark& to) const;
    [[nodiscard]] std::size_t turnBefore(int row) const;
    [[nodiscard]] int setupAt(int row) const;
    [[nodiscard]] double rawAt(int row) const;
    [[nodiscard]] double distanceAt(int row) const;
    [[nodiscard]] bool isTurn(int row) const;

    const sheet::Grid& m_grid;
    Closing m_closing;
    std::vector<Reading> m_rows;  // by row
    std::vector<Turn> m_turns;    // by row; the first is row 1
    std::vector<int> m_knownRows; // ascending
    std::vector<int> m_touched;
    std::size_t m_usable = 0; // turns before the stop
    int m_stoppedAt = 0;
    int m_lastSight = 1;
    int m_lastRead = 0;
    std::size_t m_version = 0;
    std::vector<Mark> m_marks;
    std::vector<Stretch> m_stretches;
    std::vector<RunSection> m_sections;
    std::vector<Contradiction> m_contradictions;
    bool m_stale = true;
    bool m_unsettled = true;
};

} // namespace survey
