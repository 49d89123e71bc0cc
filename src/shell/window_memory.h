#pragma once

#include <QMainWindow>

#include <string>

namespace sheet {
class Grid;
}

namespace shell {

/// What the main window is like from one start to the next: its place and size, the open panes, the letters
/// of the grid. One file of the program's own, "window.ini" in the desktop's state folder; without it, and
/// where it cannot be read or written, the window opens as designed.
class WindowMemory {
  public:
    /// `folder` empty: the user's own, below the XDG state home.
    WindowMemory(QMainWindow& window, sheet::Grid& grid, const std::string& folder);

    void restore() const;
    void keep() const;

  private:
    QMainWindow& m_window;
    sheet::Grid& m_grid;
    QString m_file;
};

} // namespace shell
