#include "undo_items.h"

#include "frmGrl.h"
#include "text.h"

#include <QAction>

#include <utility>

namespace shell {
namespace {

class UndoItems final : public WindowPart {
  public:
    explicit UndoItems(frmGrl& window) : m_window(window), m_journal(window.journal()) {
        QMenu& menu = window.menu("mnuEdit");
        const auto add = [&](const char* name, const char* caption, const char* shortcut,
                             void (UndoItems::*click)()) {
            return &window.addItem(menu, {name,
                                          caption,
                                          [this, click] { (this->*click)(); },
                                          {.name = caption + 1, .heldByFrames = true, .isNoStep = true},
                                          shortcut});
        };
        m_undo = add("mnuUndo", "&Undo", "Ctrl+Z", &UndoItems::undo);
        m_redo = add("mnuRedo", "&Redo", "Ctrl+Y; Ctrl+Shift+Z", &UndoItems::redo);
    }

    void bookShown() override {
        if (std::exchange(m_shown, m_journal.version()) == m_journal.version()) return;
        const auto caption = [](const char* what, const std::string& step) {
            return step.empty() ? text(what)
                                : text(what) + u' ' + fromUtf8(step).replace(u'&', QLatin1String("&&"));
        };
        m_undo->setText(caption("&Undo", m_journal.undoName()));
        m_redo->setText(caption("&Redo", m_journal.redoName()));
    }

  private:
    void undo() {
        const std::string name = m_journal.undoName();
        tell(m_journal.undo(), "Taken back: " + name + ".", "There is nothing to take back.");
    }
    void redo() {
        const std::string name = m_journal.redoName();
        tell(m_journal.redo(), "Done again: " + name + ".", "There is nothing to do again.");
    }
    void tell(bool done, const std::string& what, const char* nothing) {
        if (done) m_window.desktop().hideProgress(); // as a stopped reduction leaves it
        m_window.desktop().status(done ? what : nothing);
    }

    frmGrl& m_window;
    sheet::Journal& m_journal;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
    std::uint64_t m_shown = 0;
};

} // namespace

std::unique_ptr<WindowPart> makeUndoItems(frmGrl& window) {
    return std::make_unique<UndoItems>(window);
}

} // namespace shell
