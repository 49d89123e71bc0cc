#pragma once

#include "spreadsheet.h"

#include <chrono>

namespace spreadsheet {

/// How long a spreadsheet program that gives no sign of life is waited for. Between its short waits the
/// caller's question is asked, so that a window stays alive meanwhile.
class Patience {
  public:
    using Clock = std::chrono::steady_clock;

    Patience(std::chrono::milliseconds limit, const GoOn& goOn)
        : m_limit(limit), m_end(Clock::now() + limit), m_goOn(goOn) {}

    /// Waits until `fd` is ready for `events` (poll), its other end closed, or `most` has passed; false in
    /// the last case. Raises Cancelled, or NotAnswering when the whole limit is used up.
    bool ready(int fd, short events, std::chrono::milliseconds most);
    void pause(std::chrono::milliseconds time);

    /// Rows have come: the limit starts anew.
    void rowsRead(std::size_t count);

  private:
    void ask() const;

    std::chrono::milliseconds m_limit;
    Clock::time_point m_end;
    const GoOn& m_goOn;
    std::size_t m_rows = 0;
};

} // namespace spreadsheet
