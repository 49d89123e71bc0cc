#pragma once

#include <memory>

namespace shell {

class frmGrl;

/// A part of the main window with a file of its own: a bar, a pane, a menu and what belongs to them. Made
/// once by its function in the table of frmGrl_parts.cpp, when buttons, menus and frames stand; it puts what
/// it shows into the window (frmGrl::addMenu, frmGrl::addItem, addToolBar, addDockWidget) and runs what the
/// user does there through frmGrl::act.
class WindowPart {
  public:
    WindowPart() = default;
    WindowPart(const WindowPart&) = delete;
    WindowPart& operator=(const WindowPart&) = delete;
    virtual ~WindowPart() = default;

    /// The book or the window's state may be another one: after every action but a timer's. Must be cheap.
    virtual void bookShown() {}
};

using MakePart = std::unique_ptr<WindowPart> (*)(frmGrl& window);

} // namespace shell
