#pragma once

#include "book.h"
#include "desktop/desktop.h"

#include <functional>
#include <string>
#include <vector>

namespace sheet {

/// What stands over the row that was worked last, metres.
struct Running {
    float height = 0;      ///< of the instrument
    float lastReading = 0; ///< I.S. or F.S.; 0 on a row without either
};

/// What became of a reduction.
struct Reduction {
    int stoppedAt = 0;  ///< the row whose error ended the run; 0 when all rows are done
    std::string reason; ///< the error's description
    Running running;    ///< where the run ended

    struct Chainage {
        int row;
        std::string before;
    };
    std::vector<Chainage> madeLonger{}; ///< those without "-", which are other chainages now

    [[nodiscard]] bool stopped() const { return stoppedAt != 0; }
};

/// Reduces the whole book by the height-of-instrument method: fills "Hgt.Inst" and "R.Level." and makes
/// chainages six characters long. Every height and level is rounded to single precision before it is written.
/// A book without a row below the starting row stays as it is, and what is written before an error stays.
/// `before` is what holds until the run says otherwise; `rowDone` hears of each row from 2 on. Linear in
/// rows.
Reduction reduce(Grid& grid, const Running& before = {}, const std::function<void(int row)>& rowDone = {});

/// The command Cal: reduces the book behind a hidden grid with the progress bar shown, and goes on keying
/// from the last height of instrument. Chainages that it made others of are among the notices. An error is
/// shown in a message box and leaves the grid hidden and the bar shown.
Reduction reduceLevels(Book& book, desktop::Desktop& desktop);

} // namespace sheet
