#include "frmGrl.h"

#include "text.h"

#include <QAction>
#include <QMenuBar>

#include <cstring>

// The menus that every version of the program has, and what adds to them.

namespace shell {

struct frmGrl::MenuRow {
    const char* name;
    const char* caption;     ///< "-" for a separator
    Handler click = nullptr; ///< none: a menu of the bar, which holds the rows below it
    Action action = {};
    const char* shortcut = "";
};

const frmGrl::MenuRow frmGrl::menuTable[] = {
    {"mnuFile", "&File"},
    {"mnuNew", "&New...", &frmGrl::mnuNew_Click, {"New"}, "Ctrl+N"},
    {"mnuOpen", "&Open...", &frmGrl::mnuOpen_Click, {"Open"}, "Ctrl+O"},
    {"mnuSaveas", "Save &as...", &frmGrl::mnuSaveas_Click, {"Save As", true}, "Ctrl+Shift+S"},
    {"mnuSave", "&Save", &frmGrl::mnuSave_Click, {"Save", true}, "Ctrl+S"},
    {"mnuAppend", "&Append File", &frmGrl::mnuAppend_Click, {"Append File"}},
    {"sep11", "-"},
    {"mnuX1", "x1", &frmGrl::mnuX1_Click, {"Open"}},
    {"mnuX2", "x2", &frmGrl::mnuX2_Click, {"Open"}},
    {"mnuX3", "x3", &frmGrl::mnuX3_Click, {"Open"}},
    {"mnuX4", "x4", &frmGrl::mnuX4_Click, {"Open"}},
    {"sep1", "-"},
    {"mnuExit", "E&xit", &frmGrl::mnuExit_Click, {"Exit"}, "Ctrl+Q"},
    {"mnuTools", "&Tools"},
    {"mnuSettings", "&Settings", &frmGrl::mnuSettings_Click, {"Settings"}},
    {"mnuExport", "&Export to Road Soft.", &frmGrl::mnuExport_Click, {"Export", true}},
    {"mnuExcel", "Ex&port to Excel", &frmGrl::mnuExcel_Click, {"Export to CSV-File", true}},
    {"mnuImport", "&Import From Excel", &frmGrl::mnuImport_Click, {"Import"}},
    {"sep3", "-"},
    {"mnuSetPath", "Set Path", &frmGrl::mnuSetPath_Click, {"Set Path"}},
    {"sep2", "-"},
    {"mnuPass", "&Passward", &frmGrl::mnuPass_Click, {"Passward"}},
    {"MnuHelp", "&Help"},
    {"MnuHelp1", "&Help", &frmGrl::MnuHelp1_Click, {"Help"}, "F1"},
    {"mnuAbout", "&About", &frmGrl::mnuAbout_Click, {"About"}},
};

void frmGrl::buildMenus() {
    QMenu* bar = nullptr;
    std::size_t recent = 0;
    for (const MenuRow& row : menuTable) {
        if (row.click == nullptr && std::strcmp(row.caption, "-") != 0) {
            bar = &addMenu(row.name, row.caption);
            continue;
        }
        Q_ASSUME(bar != nullptr); // the table begins with a menu of the bar
        QAction& item = addItem(
            *bar, {row.name, row.caption, [this, &row] { (this->*row.click)(); }, row.action, row.shortcut});
        if (std::strncmp(row.name, "mnuX", 4) != 0 || recent == m_mnuX.size()) continue;
        item.setVisible(false);
        m_mnuX[recent++] = &item;
    }
}

QMenu& frmGrl::menu(const char* name) {
    auto* found = menuBar()->findChild<QMenu*>(QLatin1String(name), Qt::FindDirectChildrenOnly);
    if (found == nullptr) throw std::out_of_range(name);
    return *found;
}

QMenu& frmGrl::addMenu(const char* name, const char* caption, const char* before) {
    auto* added = new QMenu(text(caption), menuBar());
    added->setObjectName(QLatin1String(name));
    added->setToolTipsVisible(false);
    menuBar()->insertMenu(*before == '\0' ? nullptr : menu(before).menuAction(), added);
    return *added;
}

QAction& frmGrl::addItem(QMenu& menu, const MenuItem& item) {
    const bool isSeparator = std::strcmp(item.caption, "-") == 0;
    auto* added = new QAction(isSeparator ? QString() : text(item.caption), &menu);
    added->setSeparator(isSeparator);
    const bool atEnd = *item.before == '\0';
    menu.insertAction(atEnd ? nullptr : menu.findChild<QAction*>(QLatin1String(item.before)), added);
    added->setObjectName(QLatin1String(item.name));
    added->setMenuRole(QAction::NoRole);
    if (isSeparator) return *added;
    added->setCheckable(item.checkable);
    const QList<QKeySequence> shortcuts =
        QKeySequence::listFromString(QLatin1String(item.shortcut), QKeySequence::PortableText);
    added->setShortcuts(shortcuts);
    QObject::connect(added, &QAction::triggered, this,
                     [this, click = item.click, action = item.action] { runMenu(action, click); });
    if (!shortcuts.isEmpty() || item.action.heldByFrames)
        m_items.push_back({added, shortcuts, item.action.heldByFrames});
    return *added;
}

void frmGrl::runMenu(const Action& action, const std::function<void()>& click) {
    act(action, click);
    if (!action.leavesFocus && !m_ended && !frameIsOpen()) m_desktop.focusGrid();
}

// The keys are the frame's boxes' own then, and nothing is taken back or moved beneath it.
void frmGrl::holdShortcuts() {
    const bool hold = frameIsOpen();
    if (std::exchange(m_shortcutsHeld, hold) == hold) return;
    for (const Held& held : m_items) {
        held.item->setShortcuts(hold ? QList<QKeySequence>() : held.shortcuts);
        if (held.whole) held.item->setEnabled(!hold);
    }
}

} // namespace shell
