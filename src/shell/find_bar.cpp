#include "find_bar.h"

#include "controls/command_button.h"
#include "controls/makers.h"
#include "controls/metrics.h"
#include "frmGrl.h"
#include "text.h"

#include "sheet/book.h"
#include "sheet/search.h"
#include "survey/chainage_search.h"

#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QToolBar>

namespace shell {
namespace {

constexpr Action findAction{.name = "Find", .heldByFrames = true, .leavesFocus = true};
constexpr Action gotoAction{.name = "Go to chainage", .heldByFrames = true, .leavesFocus = true};

/// A line to type into, in a bar that Esc closes.
class AskLine final : public QLineEdit {
  public:
    std::function<void(bool shift)> entered;
    std::function<void()> closed;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape)
            closed();
        else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            entered(event->modifiers().testFlag(Qt::ShiftModifier));
        else
            QLineEdit::keyPressEvent(event);
    }
};

class FindBar final : public WindowPart {
  public:
    explicit FindBar(frmGrl& window) : m_window(window) {
        QMenu& menu = window.menu("mnuEdit");
        window.addItem(menu, {"sepFind", "-"});
        window.addItem(
            menu, {"mnuFind", "&Find...", [this] { open(*m_findBar, *m_txtFind); }, findAction, "Ctrl+F"});
        window.addItem(menu, {"mnuFindNext", "Find &next", [this] { findNext(false); }, findAction, "F4"});
        window.addItem(menu, {"mnuGoto", "&Go to chainage...", [this] { open(*m_gotoBar, *m_txtGoto); },
                              gotoAction, "Ctrl+G"});
        buildFind();
        buildGoto();
    }

    // Nothing is looked for behind a frame.
    void bookShown() override {
        const bool held = m_window.frameIsOpen();
        for (QToolBar* bar : {m_findBar, m_gotoBar})
            if (bar->isEnabled() == held) bar->setEnabled(!held);
    }

  private:
    QToolBar* addBar(const char* name, const char* title) {
        auto* bar = new QToolBar(text(title));
        bar->setObjectName(QLatin1String(name));
        bar->setMovable(false);
        bar->toggleViewAction()->setVisible(false);
        m_window.addToolBar(Qt::BottomToolBarArea, bar);
        bar->hide();
        return bar;
    }

    AskLine* addLine(QToolBar& bar, const char* name, const char* caption, const QString& hint) {
        auto* line = new AskLine;
        line->setObjectName(QLatin1String(name));
        line->setAccessibleName(text(caption));
        line->setPlaceholderText(hint);
        line->setMaximumWidth(line->fontMetrics().averageCharWidth() * 36);
        QLabel* label = makeLabel(caption, *line);
        label->setContentsMargins(labelPadding, 0, margin, 0);
        bar.addWidget(label);
        bar.addWidget(line);
        line->closed = [this, &bar] { close(bar); };
        return line;
    }

    void addButton(QToolBar& bar, const char* name, const char* caption, std::function<void()> click) {
        auto* button = new CommandButton(QLatin1String(name), text(caption), nullptr);
        button->setFocusPolicy(Qt::TabFocus);
        QObject::connect(button, &QPushButton::clicked, &bar, std::move(click));
        bar.addWidget(button);
    }

    void buildFind() {
        m_findBar = addBar("barFind", "Find");
        m_txtFind = addLine(*m_findBar, "txtFind", "Find:", text("text or number"));
        m_txtFind->entered = [this](bool shift) { act(shift); };
        m_column = makeCombo("cboFindIn", "Column to search");
        m_column->addItem(text("All columns"));
        for (int col = 0; col < sheet::columnCount; ++col)
            m_column->addItem(fromUtf8(m_window.book().MSFG.Text(0, col)));
        QLabel* where = makeLabel("In:", *m_column);
        where->setContentsMargins(margin, 0, margin, 0);
        m_findBar->addWidget(where);
        m_findBar->addWidget(m_column);
        m_whole = makeCheckBox("chkWhole", "Whole cell");
        m_findBar->addWidget(m_whole);
        addButton(*m_findBar, "cmdFindNext", "Next", [this] { act(false); });
        addButton(*m_findBar, "cmdFindBack", "Previous", [this] { act(true); });
        addButton(*m_findBar, "cmdFindClose", "Close", [this] { close(*m_findBar); });
    }

    void buildGoto() {
        m_gotoBar = addBar("barGoto", "Go to chainage");
        m_txtGoto = addLine(*m_gotoBar, "txtGoto", "Go to chainage:", text("1-250, 1+250 or 1250"));
        m_txtGoto->entered = [this](bool) { m_window.act(gotoAction, [this] { goTo(); }); };
        addButton(*m_gotoBar, "cmdGoto", "Go", [this] { m_window.act(gotoAction, [this] { goTo(); }); });
        addButton(*m_gotoBar, "cmdGotoClose", "Close", [this] { close(*m_gotoBar); });
    }

    void open(QToolBar& bar, QLineEdit& line) {
        if (!m_window.book().MSFG.Visible()) return;
        (&bar == m_findBar ? m_gotoBar : m_findBar)->hide();
        bar.show();
        line.setFocus(Qt::ShortcutFocusReason);
        line.selectAll();
    }

    void close(QToolBar& bar) {
        bar.hide();
        m_window.desktop().focusGrid();
    }

    void act(bool backwards) {
        m_window.act(findAction, [this, backwards] { findNext(backwards); });
    }

    void findNext(bool backwards) {
        sheet::Grid& grid = m_window.book().MSFG;
        desktop::Desktop& desktop = m_window.desktop();
        if (!grid.Visible()) return;
        const sheet::Wanted wanted{toUtf8(m_txtFind->text()), m_column->currentIndex() - 1,
                                   m_whole->isChecked(), backwards};
        if (wanted.text.empty()) {
            open(*m_findBar, *m_txtFind);
            return desktop.status("Enter what is to be found.");
        }
        const auto hit = sheet::find(grid, wanted, grid.Row(), grid.Col());
        if (!hit) {
            const std::string place = wanted.col < 0 ? "the book" : grid.Text(0, wanted.col);
            return desktop.status('"' + wanted.text + "\" is not in " + place + '.');
        }
        m_window.moveCursor(hit->row, hit->col);
        if (hit->wrapped)
            desktop.status(std::string("The search went on from the ") + (backwards ? "end" : "top") + '.');
    }

    void goTo() {
        sheet::Grid& grid = m_window.book().MSFG;
        if (!grid.Visible()) return;
        const std::string answer = toUtf8(m_txtGoto->text());
        const auto row = survey::rowOfChainage(grid, answer);
        if (!row)
            return m_window.desktop().status(answer.empty()
                                                 ? std::string("Enter a chainage, such as 1-250.")
                                                 : "There is no chainage " + answer + " or beyond.");
        m_window.moveCursor(*row, sheet::Chainage);
        close(*m_gotoBar);
    }

    frmGrl& m_window;
    QToolBar* m_findBar = nullptr;
    QToolBar* m_gotoBar = nullptr;
    AskLine* m_txtFind = nullptr;
    AskLine* m_txtGoto = nullptr;
    QComboBox* m_column = nullptr;
    QCheckBox* m_whole = nullptr;
};

} // namespace

std::unique_ptr<WindowPart> makeFindBar(frmGrl& window) {
    return std::make_unique<FindBar>(window);
}

} // namespace shell
