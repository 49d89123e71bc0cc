#pragma once

#include <functional>

namespace shell {

/// One thing that the user does, as the one edge of the window knows it (frmGrl::act): a click on a button, a
/// menu item, a key, a move of the cursor, a drop; and what a timer does for the user.
struct Action {
    enum Kind {
        Command, ///< a button or a menu item: the message of before goes, and the window is shown anew
        Key,     ///< typing and moving in the grid: the message stays
        Timer,   ///< runs by itself
    };

    const char* name = "";     ///< what it is called behind "Undo", e.g. "Del Row"
    bool walksGrid = false;    ///< goes over the whole grid: the cell being edited is checked first
    bool heldByFrames = false; ///< does nothing while the Settings or the transfer's frame is open
    bool leavesFocus = false;  ///< takes care of the focus itself; else a menu's command gives it to the grid
    Kind kind = Command;
    bool typesText = false; ///< goes on the typing before it: one step of the history
    bool isNoStep = false;  ///< is about the history itself
};

/// An item that a menu of the window takes.
struct MenuItem {
    const char* name;    ///< its object name
    const char* caption; ///< "-" for a separator
    std::function<void()> click = nullptr;
    Action action = {};
    const char* shortcut = ""; ///< as QKeySequence reads it; several are parted by "; "
    bool checkable = false;
    const char* before = ""; ///< the item or separator that it stands before; empty: at the end
};

} // namespace shell
