#pragma once

#include "desktop/desktop.h"
#include "grid.h"

namespace sheet {

/// Keeps a grid hidden while a command walks it, and shows it again however the command ends.
class HiddenGrid {
  public:
    explicit HiddenGrid(Grid& grid) : m_grid(grid) { m_grid.setVisible(false); }
    HiddenGrid(const HiddenGrid&) = delete;
    HiddenGrid& operator=(const HiddenGrid&) = delete;
    ~HiddenGrid() { m_grid.setVisible(true); }

  private:
    Grid& m_grid;
};

/// A command at work on many rows: the grid is hidden and the progress bar shown until its end.
class LongWork {
  public:
    LongWork(Grid& grid, desktop::Desktop& desktop) : m_hidden(grid), m_desktop(desktop) {
        m_desktop.showProgress();
    }
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;
    ~LongWork() { m_desktop.hideProgress(); }

    void done(int rows, int ofRows) {
        m_desktop.setProgress(static_cast<float>(rows) * 100 / static_cast<float>(ofRows));
    }

  private:
    HiddenGrid m_hidden;
    desktop::Desktop& m_desktop;
};

} // namespace sheet
