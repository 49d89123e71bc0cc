#pragma once

#include "sheet/grid_listener.h"

#include <QMainWindow>
#include <QTimer>

#include <string>

namespace sheet {
class Grid;
}

namespace shell {

/// What the main window is like from one start to the next: its place and size, the open panes, the letters
/// of the grid. One file of the program's own, "window.ini" in the desktop's state folder; without it, and
/// where it cannot be read or written, the window opens as designed.
class WindowMemory final : public QObject, public sheet::GridListener {
  public:
    /// `folder` empty: the user's own, below the XDG state home.
    WindowMemory(QMainWindow& window, sheet::Grid& grid, const std::string& folder);
    ~WindowMemory() override;

    /// Call once, when all panes are there. From then on a change is kept when it has rested for a moment.
    void restore();
    void keep();

    bool eventFilter(QObject* watched, QEvent* event) override;
    void lookChanged() override { m_due.start(); }

  private:
    struct Look {
        QByteArray geometry, panes;
        double letters = 0;
        friend bool operator==(const Look&, const Look&) = default;
    };
    [[nodiscard]] Look look() const;

    QMainWindow& m_window;
    sheet::Grid& m_grid;
    QString m_file;
    QTimer m_due;
    Look m_kept;
};

} // namespace shell
