#include "survey_panes.h"

#include "../controls/flex_grid.h"
#include "../controls/metrics.h"
#include "../frmGrl.h"
#include "../text.h"
#include "book_memory.h"
#include "findings_pane.h"
#include "heading_dialog.h"
#include "levels_pane.h"

#include "survey/adjusted.h"
#include "survey/findings.h"

#include <QAction>
#include <QDockWidget>
#include <QLabel>
#include <QScrollBar>
#include <QStatusBar>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace shell {
namespace {

using survey::Finding;
using survey::FindingRule;

// The panes are brought into step so long after a change, once for all changes until then.
constexpr std::chrono::milliseconds followAfter{20};

class SurveyPanes final : public WindowPart {
  public:
    explicit SurveyPanes(frmGrl& window)
        : m_window(window),
          m_memory(window.stateFolder()),
          m_runs(grid()),
          m_findings(grid(), m_runs, survey::Findings::Cursor::Follow, m_memory.staff()),
          m_levelsPane(new LevelsPane(grid(), m_runs)),
          m_findingsPane(new FindingsPane) {
        grid().addListener(m_runs);
        grid().addListener(m_findings);
        m_levels = dock("paneLevels", "Levels", *m_levelsPane);
        m_list = dock("paneFindings", "Findings", *m_findingsPane);
        buildLevels();
        buildFindings();
        m_follow.setSingleShot(true);
        m_follow.setInterval(followAfter);
        QObject::connect(&m_follow, &QTimer::timeout, &m_follow, [this] {
            m_window.act({.name = "Panes", .kind = Action::Timer}, [this] { follow(); });
        });
        QObject::connect(m_window.grid().verticalScrollBar(), &QScrollBar::valueChanged, &m_follow,
                         [this] { wake(); });
    }
    ~SurveyPanes() override {
        grid().removeListener(m_findings);
        grid().removeListener(m_runs);
    }

    void bookShown() override { wake(); }

  private:
    [[nodiscard]] sheet::Grid& grid() const { return m_window.book().MSFG; }

    void wake() {
        if (!m_follow.isActive()) m_follow.start();
    }

    QDockWidget* dock(const char* name, const char* title, QWidget& content) {
        auto* made = new QDockWidget(text(title), &m_window);
        made->setObjectName(QLatin1String(name));
        made->setWidget(&content);
        m_window.addDockWidget(Qt::BottomDockWidgetArea, made);
        made->hide();
        QObject::connect(made, &QDockWidget::visibilityChanged, &m_follow, [this](bool) {
            showChecks();
            wake();
        });
        return made;
    }

    void buildLevels() {
        QMenu& menu = m_window.addMenu("mnuLevels", "&Levels", "MnuHelp");
        const auto pane = [&](const char* name, const char* caption, const char* action, bool riseAndFall) {
            MenuItem item{name, caption, [this, riseAndFall] { openLevels(riseAndFall); }, {action}};
            item.checkable = true;
            return &m_window.addItem(menu, item);
        };
        m_misclosure = pane("mnuMisclosure", "&Misclosure and adjustment", "Misclosure", false);
        m_riseAndFall = pane("mnuRiseFall", "&Rise and fall", "Rise and fall", true);
        m_window.addItem(menu, {"mnuHeading",
                                "Job &heading...",
                                [this] { editHeading(); },
                                {.name = "Job heading", .heldByFrames = true}});
        m_window.addItem(menu, {"mnuPutLevels",
                                "&Put the adjusted levels into R.Level.",
                                [this] { putLevels(); },
                                {.name = "Adjusted levels", .walksGrid = true, .heldByFrames = true}});
        m_levelsPane->chosen = [this](int row) { goTo(row); };
        m_levelsPane->closingChanged = [this] {
            m_memory.keep(m_path, m_runs.closing());
            wake();
        };
    }

    void buildFindings() {
        QMenu& menu = m_window.menu("mnuView");
        MenuItem item{"mnuFindings", "&Findings", [this] { openFindings(); }, {"Findings"}, "F8"};
        item.checkable = true;
        m_findingsItem = &m_window.addItem(menu, item);
        m_window.addItem(
            menu,
            {"mnuNextFinding", "&Next finding", [this] { nextFinding(); }, {"Next finding"}, "Shift+F8"});
        m_findingsPane->setStaff(m_findings.staff());
        m_findingsPane->chosen = [this](int row) { goTo(row); };
        m_findingsPane->setAside = [this](std::uint64_t mark) {
            if (m_aside.erase(mark) == 0) m_aside.insert(mark);
            m_memory.keep(m_path, m_aside);
            showFindings();
        };
        m_findingsPane->wantsAside = [this] { showFindings(); };
        m_findingsPane->staffChanged = [this](double metres) {
            m_findings.setStaff(metres);
            m_memory.keepStaff(metres);
            wake();
        };
        m_count = new QLabel;
        m_count->setObjectName(QStringLiteral("lblFindings"));
        m_count->setAccessibleDescription(text("Findings in the book"));
        m_count->setContentsMargins(labelPadding, 0, labelPadding, 0);
        m_count->hide();
        m_window.statusBar()->addPermanentWidget(m_count);
    }

    /// The same item closes what it opened; the other one changes what the pane shows.
    void openLevels(bool riseAndFall) {
        const bool same = !m_levels->isHidden() && m_levelsPane->riseAndFall() == riseAndFall;
        m_levelsPane->setRiseAndFall(riseAndFall);
        m_levels->setVisible(!same);
        if (!same) m_levels->raise();
        showChecks();
        follow();
    }

    void openFindings() {
        m_list->setVisible(m_list->isHidden());
        m_shown = false;
        follow();
    }

    void showChecks() const {
        const bool open = !m_levels->isHidden();
        if (m_misclosure != nullptr) m_misclosure->setChecked(open && !m_levelsPane->riseAndFall());
        if (m_riseAndFall != nullptr) m_riseAndFall->setChecked(open && m_levelsPane->riseAndFall());
        if (m_findingsItem != nullptr) m_findingsItem->setChecked(!m_list->isHidden());
    }

    void editHeading() {
        project::Book& book = m_window.book();
        HeadingDialog dialog(book.JobHeading, &m_window);
        if (dialog.exec() != QDialog::Accepted || dialog.heading() == book.JobHeading) return;
        book.JobHeading = dialog.heading();
        book.BookChanged = true;
    }

    void putLevels() {
        const auto levels = survey::adjustedLevels(m_runs, m_runs.closing().method);
        if (levels.empty()) return m_window.desktop().status("Not closed: no known level at the end");
        for (const auto& [row, level] : levels)
            grid().setText(row, sheet::RLevel, level);
        m_window.book().BookChanged = true;
        m_window.desktop().status(std::to_string(levels.size()) +
                                  (levels.size() == 1 ? " level" : " levels") +
                                  " adjusted; Cal brings back the raw ones");
    }

    void goTo(int row) {
        if (m_window.frameIsOpen() || row >= grid().Rows()) return;
        m_window.grid().move(row, grid().Col(), false);
        m_window.grid().flush();
    }

    void nextFinding() {
        const std::vector<Finding>& all = m_findings.all();
        const Finding* next = nullptr;
        for (const Finding& each : all) {
            if (m_aside.contains(each.mark)) continue;
            const bool behind = each.row > grid().Row();
            if (next == nullptr || (behind && next->row <= grid().Row())) next = &each;
        }
        if (next == nullptr) return m_window.desktop().status("Nothing looks wrong");
        const std::string said = "Row " + std::to_string(next->row) + ": " + next->text;
        goTo(next->row);
        m_window.desktop().status(said);
    }

    /// Another file than before brings its own ways of judging and its own findings that were set aside.
    void followFile() {
        const project::Book& book = m_window.book();
        std::string path = book.hasFile() ? book.projectPath() : std::string();
        if (path == m_path) return;
        m_path = std::move(path);
        m_runs.setClosing(m_memory.closing(m_path));
        m_aside = m_memory.aside(m_path);
        m_levelsPane->showClosing();
        m_listed = 0;
    }

    void follow() {
        followFile();
        if (!m_levels->isHidden()) {
            const FlexGrid& view = m_window.grid();
            const int first = std::max(view.rowAt(0), 0) + 1;
            const int bottom = view.rowAt(view.viewport()->height() - 1);
            m_levelsPane->follow(first, bottom < 0 ? grid().Rows() - 1 : bottom + 1);
        }
        if (m_findings.version() != m_listed)
            showFindings();
        else if (!m_list->isHidden() && (!m_shown || notices() != m_listedNotices))
            showFindings();
    }

    [[nodiscard]] std::vector<sheet::Notice> notices() const { return m_window.book().notices.list(grid()); }

    void showFindings() {
        m_listed = m_findings.version();
        const std::vector<Finding>& all = m_findings.all();
        std::vector<FindingsPane::Entry> entries;
        std::size_t count = 0;
        for (const Finding& each : all) {
            const bool aside = m_aside.contains(each.mark);
            if (!aside && each.rule != FindingRule::NotClosed) ++count;
            if (!aside || m_findingsPane->showsAside()) entries.push_back({each, aside});
        }
        m_shown = !m_list->isHidden();
        if (m_shown) m_findingsPane->show(entries, m_listedNotices = notices());
        const QString said = count == 0   ? QString()
                             : count == 1 ? text("1 finding, F8")
                                          : text("%1 findings, F8").arg(count);
        if (m_count->text() == said) return;
        m_count->setText(said);
        m_count->setVisible(count > 0);
    }

    frmGrl& m_window;
    BookMemory m_memory;
    survey::Runs m_runs;
    survey::Findings m_findings;
    LevelsPane* m_levelsPane;
    FindingsPane* m_findingsPane;
    QDockWidget* m_levels = nullptr;
    QDockWidget* m_list = nullptr;
    QAction* m_misclosure = nullptr;
    QAction* m_riseAndFall = nullptr;
    QAction* m_findingsItem = nullptr;
    QLabel* m_count = nullptr;
    QTimer m_follow;
    std::string m_path; ///< of the book's file; empty: none
    std::set<std::uint64_t> m_aside;
    std::size_t m_listed = 0; ///< version of the findings that the status bar counts
    bool m_shown = false;     ///< and that the open pane shows
    std::vector<sheet::Notice> m_listedNotices;
};

} // namespace

std::unique_ptr<WindowPart> makeSurveyPanes(frmGrl& window) {
    return std::make_unique<SurveyPanes>(window);
}

} // namespace shell
