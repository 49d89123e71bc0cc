#include "edit_items.h"

#include "controls/flex_grid.h"
#include "frmGrl.h"

#include "entry/clipboard.h"
#include "entry/overwritten.h"

#include <QAbstractButton>
#include <QMenu>

#include <array>

namespace shell {
namespace {

constexpr char32_t copyKey = 3;
constexpr char32_t pasteKey = 22;

class EditItems final : public WindowPart {
  public:
    explicit EditItems(frmGrl& window) {
        QMenu& menu = window.menu("mnuEdit");
        window.addItem(menu, {"sepCut", "-"});
        window.addItem(
            menu,
            {"mnuCut", "Cu&t", [&window] { cut(window); }, {.name = "Cut", .heldByFrames = true}, "Ctrl+X"});
        // The grid hears these two keys itself; here they are only shown.
        window.addItem(menu, {"mnuCopy", "&Copy\tCtrl+C", [&window] { window.typeKey(copyKey); }, {"Copy"}});
        window.addItem(menu, {"mnuPaste",
                              "&Paste\tCtrl+V",
                              [&window] { window.typeKey(pasteKey); },
                              {.name = "Paste", .heldByFrames = true}});
    }

  private:
    static void cut(frmGrl& window) {
        sheet::Grid& grid = window.book().MSFG;
        if (!grid.Visible()) return;
        window.desktop().setClipboardText(entry::selectedText(grid));
        const entry::Overwritten watch(window.book(), false);
        entry::emptySelection(grid);
        watch.tell(sheet::Notice::Undo);
    }
};

class ContextMenu final : public WindowPart {
  public:
    explicit ContextMenu(frmGrl& window) {
        m_menu.addActions(window.menu("mnuEdit").actions());
        m_menu.addSeparator();
        for (const char* name : {"cmdIns", "cmdInss", "cmdDel", "cmdDels"}) {
            auto* button = window.findChild<QAbstractButton*>(QLatin1String(name));
            const QString caption = button->text() == QLatin1String("...")
                                        ? button->accessibleName() + button->text()
                                        : button->text();
            QAction* item = m_menu.addAction(caption);
            QObject::connect(item, &QAction::triggered, button, [button] { button->click(); });
        }
        m_menu.setObjectName(QStringLiteral("mnuContext"));
        window.grid().contextMenu = [this, &window](QPoint place) {
            if (!window.frameIsOpen()) m_menu.popup(place);
        };
    }

  private:
    QMenu m_menu;
};

} // namespace

std::unique_ptr<WindowPart> makeEditMenu(frmGrl& window) {
    window.addMenu("mnuEdit", "&Edit", "mnuTools");
    return std::make_unique<WindowPart>();
}

std::unique_ptr<WindowPart> makeEditItems(frmGrl& window) {
    return std::make_unique<EditItems>(window);
}

std::unique_ptr<WindowPart> makeContextMenu(frmGrl& window) {
    return std::make_unique<ContextMenu>(window);
}

} // namespace shell
