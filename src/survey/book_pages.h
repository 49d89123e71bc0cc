#pragma once

#include "runs.h"

#include <functional>
#include <string>
#include <vector>

// The pages of a printed field book. Every page can be summed by itself: its first entry is a back sight and
// its last a fore sight. Where a page ends within a set-up, the last intermediate sight is repeated as its
// fore sight and again as the back sight of a line "brought forward" on the next page; where it ends on a
// change point, the fore sight stands on the one page and the back sight, brought forward, on the next.

namespace survey {

struct PageLine {
    int row;               ///< of the book; for a line brought forward the row of its point
    bool forward;          ///< brought forward from the page before
    std::string backSight; ///< as printed: a repeated reading in (), one that is not summed in []
    std::string foreSight;
};

/// The sums at the foot of a page. Metres.
struct PageFoot {
    double backSights = 0;
    double foreSights = 0;
    double firstLevel = 0; ///< of the point of the first back sight, by the readings
    double lastLevel = 0;
    int sights = 0;         ///< intermediate and fore sights on the page; 0: there is nothing to sum
    bool hasLevels = false; ///< both levels are known

    [[nodiscard]] bool
    agrees() const; ///< the sums and the levels differ by the same, within half a millimetre
};

struct BookPage {
    std::vector<PageLine> lines;
    PageFoot foot;
};

/// The sums of the whole book, and what the pages repeat.
struct BookSums {
    PageFoot book;
    double repeated = 0;       ///< at the ends of pages, and so in their sums of B.S. and F.S. alike
    int closingInterSight = 0; ///< row of an I.S. that the book ends on; it counts as a fore sight
    int unusedBackSight = 0;   ///< row of a last back sight from which nothing was sighted; it is not summed
};

class BookPages {
  public:
    /// `linesOf` says how many lines a row takes; one without it. No page has less than one row.
    BookPages(const sheet::Grid& grid, Runs& runs, int linesPerPage,
              const std::function<int(int row)>& linesOf = {});

    [[nodiscard]] int count() const { return static_cast<int>(m_pages.size()); }
    [[nodiscard]] BookPage page(int index) const; ///< from 0
    [[nodiscard]] BookSums sums() const;

  private:
    struct Rows {
        int first, last;
        int carried;   ///< the last sighted row before; 0: none
        int lastSight; ///< on the page; 0: none
    };

    [[nodiscard]] bool isSight(int row) const;
    [[nodiscard]] bool isInterSight(int row) const;
    void addRow(const Rows& rows, int row, BookPage& page) const;
    [[nodiscard]] std::pair<double, bool> levelOf(int row) const;

    const sheet::Grid& m_grid;
    Runs& m_runs;
    std::vector<Rows> m_pages;
    int m_lastSight = 0; // of the book
};

} // namespace survey
