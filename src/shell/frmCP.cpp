#include "frmCP.h"

#include "controls/branding.h"
#include "controls/flex_grid.h"
#include "controls/metrics.h"
#include "text.h"

#include "entry/chainage.h"
#include "exchange/csv_export.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace shell {
namespace {

// What the grid leaves of the window's width and height, in twips.
constexpr int besideGrid = 500;
constexpr int aboveAndBelowGrid = 1110;

constexpr int edge = pixels(besideGrid) / 2;
constexpr int drawingSide = 40;

} // namespace

frmCP::frmCP(sheet::Grid list, project::Book& book, QtDesktop& desktop, QWidget& window)
    : QDialog(&window), m_book(book), m_desktop(desktop), m_list(std::move(list)) {
    setObjectName(QStringLiteral("frmCP"));
    setWindowTitle(text("All Change Points."));

    m_grid = new FlexGrid(m_list, this);
    m_grid->setObjectName(QStringLiteral("MSFG"));
    m_grid->setAccessibleName(text("Change points and remarked rows"));
    m_grid->doubleClick = [this] { MSFG_DblClick(); };

    m_drawing = new branding::Drawing(this, drawingSide);
    m_lblHint = new QLabel(
        text("Double-click the list, or press Enter, to write it to a CSV file beside the project."), this);
    m_lblHint->setObjectName(QStringLiteral("lblHint"));
    m_lblHint->setTextFormat(Qt::PlainText);
    m_lblHint->setWordWrap(true);

    m_cmdClose = new QPushButton(text("Close"), this);
    m_cmdClose->setObjectName(QStringLiteral("cmdClose"));
    m_cmdClose->setAutoDefault(false);
    connect(m_cmdClose, &QPushButton::clicked, this, &QDialog::accept);

    const QSize screenSize = screen()->availableGeometry().size();
    const QSize whole(m_grid->fullWidth() + pixels(besideGrid), screenSize.height() * 6 / 10);
    resize(whole.expandedTo(screenSize * 51 / 100).boundedTo(screenSize * 95 / 100));
    m_grid->setFocus();
}

frmCP::~frmCP() {
    delete m_grid; // the view goes before the list that it shows
}

void frmCP::MSFG_DblClick() {
    m_desktop.status({});
    entry::leaveCell(m_book, m_desktop);
    exchange::exportChangePoints(m_list, m_book, m_desktop);
    m_grid->flush();
    // The main window's status bar may lie behind this window.
    if (!m_desktop.statusText().isEmpty()) m_lblHint->setText(m_desktop.statusText());
}

void frmCP::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QDialog::keyPressEvent(event);
    } else if (m_cmdClose->hasFocus()) {
        accept();
    } else {
        MSFG_DblClick();
    }
}

void frmCP::Form_Resize() {
    if (HalfScreenRule::leavesAlone(*this)) return;
    arrange();
    m_halfScreen.apply(*this);
}

void frmCP::arrange() {
    const QSize button = m_cmdClose->sizeHint().expandedTo({88, 0});
    const int aboveAndBelow =
        std::max(pixels(aboveAndBelowGrid),
                 2 * edge + groupGap + std::max(button.height(), 2 * fontMetrics().height()));
    m_grid->setGeometry(edge, edge, std::max(1, width() - pixels(besideGrid)),
                        std::max(1, height() - aboveAndBelow));
    const int top = m_grid->geometry().bottom() + 1 + groupGap;
    const QRect strip(edge, top, m_grid->width(), height() - top - groupGap);
    const auto centred = [&strip](int left, const QSize& size) {
        return QRect({left, strip.top() + (strip.height() - size.height()) / 2}, size);
    };
    m_drawing->move(centred(strip.left(), m_drawing->size()).topLeft());
    m_cmdClose->setGeometry(centred(strip.right() + 1 - button.width(), button));
    m_lblHint->setGeometry(strip.adjusted(drawingSide + groupGap, 0, -button.width() - groupGap, 0));
}

void frmCP::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    Form_Resize();
}

void frmCP::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::FontChange) arrange();
}

} // namespace shell
