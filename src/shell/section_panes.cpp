#include "section_panes.h"

#include "controls/flex_grid.h"
#include "controls/graphic.h"
#include "controls/profile_view.h"
#include "frmGrl.h"
#include "text.h"

#include "drawing/figures.h"
#include "survey/sections.h"

#include <QAction>
#include <QDockWidget>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace shell {
namespace {

using drawing::Figures;
using drawing::GroundPlace;
using survey::GroundPoint;

// A pane is drawn anew so long after a change, once for all changes until then.
constexpr std::chrono::milliseconds redrawAfter{20};
constexpr int rowsSearched = 1000; // upwards for the chainage that the cursor is in

QString figure(const std::string& text) {
    return fromUtf8(text);
}

class SectionPanes final : public WindowPart {
  public:
    explicit SectionPanes(frmGrl& window) : m_window(window), m_sections(window.book().MSFG) {
        m_window.book().MSFG.addListener(m_sections);
        QMenu& menu = window.addMenu("mnuView", "&View", "mnuTools");
        build(m_long, menu, {"paneLong", "mnuLong", "&Long section", "F6", Qt::BottomDockWidgetArea});
        build(m_cross, menu, {"paneCross", "mnuCross", "&Cross-section", "F7", Qt::RightDockWidgetArea});
        m_redraw.setSingleShot(true);
        m_redraw.setInterval(redrawAfter);
        QObject::connect(&m_redraw, &QTimer::timeout, &m_redraw, [this] { follow(); });
    }
    ~SectionPanes() override { m_window.book().MSFG.removeListener(m_sections); }

    void bookShown() override {
        if ((isOpen(m_long) || isOpen(m_cross)) && !m_redraw.isActive()) m_redraw.start();
    }

  private:
    struct Pane {
        QDockWidget* dock = nullptr;
        ProfileView* view = nullptr;
        std::size_t version = 0; ///< of the sections that it shows; 0: none yet
    };
    struct Wording {
        const char* dock;
        const char* item;
        const char* caption;
        const char* shortcut;
        Qt::DockWidgetArea area;
    };

    static bool isOpen(const Pane& pane) { return pane.dock->isVisible(); }

    void build(Pane& pane, QMenu& menu, const Wording& words) {
        const QString title = text(words.caption).remove(u'&');
        pane.dock = new QDockWidget(title, &m_window);
        pane.dock->setObjectName(QLatin1String(words.dock));
        pane.view = new ProfileView;
        pane.view->setObjectName(QLatin1String(words.dock) + QStringLiteral("View"));
        tellAsGraphic(*pane.view);
        pane.view->setAccessibleName(title);
        pane.view->chosen = [this](int row) { goTo(row); };
        pane.dock->setWidget(pane.view);
        m_window.addDockWidget(words.area, pane.dock);
        pane.dock->hide();
        QAction& item = m_window.addItem(
            menu, {words.item,
                   words.caption,
                   [&pane] { pane.dock->setVisible(!isOpen(pane)); },
                   {pane.dock->objectName() == QLatin1String("paneLong") ? "Long section" : "Cross-section"},
                   words.shortcut,
                   true});
        QObject::connect(pane.dock, &QDockWidget::visibilityChanged, &m_redraw, [this, &pane, &item](bool) {
            item.setChecked(!pane.dock->isHidden());
            if (isOpen(pane)) m_redraw.start();
        });
    }

    void goTo(int row) {
        if (m_window.frameIsOpen() || row >= m_window.book().MSFG.Rows()) return;
        m_window.grid().move(row, m_window.book().MSFG.Col(), false);
        m_window.grid().flush();
    }

    void follow() {
        const int row = m_window.book().MSFG.Row();
        if (isOpen(m_long)) {
            if (m_long.version != m_sections.version()) showLong();
            m_long.view->mark(rowOnCentre(row));
        }
        if (!isOpen(m_cross)) return;
        const double before = m_chainage;
        findChainage(row);
        if (m_cross.version != m_sections.version() || before != m_chainage) showCross();
        m_cross.view->mark(row);
    }

    /// The row of the centre point at the chainage of `row`, so that the long section has the cursor's place.
    int rowOnCentre(int row) {
        const auto here = m_sections.inRow(row);
        if (!here || here->offset == 0) return row;
        const auto points = m_sections.at(here->chainage);
        const auto centre = std::ranges::find(points, 0.0, &GroundPoint::offset);
        return centre == points.end() ? row : centre->row;
    }

    /// The chainage that the cursor is in: that of its row, or of the next row above with one.
    void findChainage(int row) {
        for (int at = row; at > std::max(0, row - rowsSearched); --at) {
            const auto here = m_sections.inRow(at);
            if (!here) continue;
            m_chainage = here->chainage;
            return;
        }
        if (m_sections.at(m_chainage).empty() && !m_sections.points().empty())
            m_chainage = m_sections.points().front().chainage;
    }

    [[nodiscard]] QString nothing() {
        const int rows = m_sections.rowsWithoutLevel();
        return rows > 0 ? text("Cal first") : text("No row has a chainage, an offset and a level");
    }

    static void take(ProfileContent& content, std::span<const GroundPoint> points,
                     double GroundPoint::*along) {
        content.ground.reserve(points.size());
        content.rows.reserve(points.size());
        for (const GroundPoint& point : points) {
            content.ground.push_back({point.*along, point.level});
            content.rows.push_back(point.row);
        }
    }

    /// Says in words what the plot shows.
    static void describe(ProfileView& view, const ProfileContent& content) {
        if (content.ground.empty()) {
            view.setAccessibleDescription(content.nothing);
            return;
        }
        const auto [low, high] = std::ranges::minmax(content.ground, {}, &GroundPlace::level);
        view.setAccessibleDescription(
            text("%1, %2 points, lowest level %3, highest level %4")
                .arg(content.title)
                .arg(content.ground.size())
                .arg(figure(drawing::levelText(low.level)), figure(drawing::levelText(high.level))));
    }

    void showLong() {
        m_long.version = m_sections.version();
        const std::vector<GroundPoint> centre = m_sections.longSection();
        ProfileContent content;
        take(content, centre, &GroundPoint::chainage);
        content.nothing = nothing();
        if (!centre.empty())
            content.title = text("Long section %1 to %2")
                                .arg(figure(drawing::chainageText(centre.front().chainage)),
                                     figure(drawing::chainageText(centre.back().chainage)));
        describe(*m_long.view, content);
        m_long.view->show(std::move(content));
    }

    void showCross() {
        m_cross.version = m_sections.version();
        const auto points = m_sections.at(m_chainage);
        ProfileContent content;
        content.figures = Figures::Offset;
        take(content, points, &GroundPoint::offset);
        content.nothing = nothing();
        if (!points.empty()) {
            content.title =
                text("Cross-section %1").arg(figure(drawing::chainageText(points.front().chainage)));
            const auto all = m_sections.points();
            if (points.data() != all.data()) addNeighbour(content, (points.data() - 1)->chainage);
            if (const GroundPoint* next = points.data() + points.size(); next != all.data() + all.size())
                addNeighbour(content, next->chainage);
        }
        describe(*m_cross.view, content);
        m_cross.view->show(std::move(content));
    }

    void addNeighbour(ProfileContent& content, double chainage) {
        std::vector<GroundPlace> ground;
        for (const GroundPoint& point : m_sections.at(chainage))
            ground.push_back({point.offset, point.level});
        content.neighbours.push_back(std::move(ground));
    }

    frmGrl& m_window;
    survey::Sections m_sections;
    Pane m_long;
    Pane m_cross;
    double m_chainage = 0;
    QTimer m_redraw;
};

} // namespace

std::unique_ptr<WindowPart> makeSectionPanes(frmGrl& window) {
    return std::make_unique<SectionPanes>(window);
}

} // namespace shell
