#include "flex_grid.h"

#include "../text.h"
#include "grid_model.h"
#include "metrics.h"
#include "row_numbers.h"

#include "sheet/book.h"

#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>
#include <QToolTip>

#include <algorithm>
#include <utility>

// What the view shows, and how it follows the grid.

namespace shell {
namespace {

// A digit of the font for which the column widths were laid down, in pixels at 8.25 points.
constexpr double standardDigit = 6.0;

/// Widths follow the digits of the font.
int columnPixels(int twips, const QFont& face) {
    return qRound(pixels(twips) * QFontMetricsF(face).horizontalAdvance(u'0') / standardDigit);
}

/// The size of a face in the window: the grid's sizes are laid down beside a desktop font of 9 points.
double scaled(double points) {
    constexpr double standardFont = 9;
    return points * QFontInfo(QApplication::font()).pointSizeF() / standardFont;
}

} // namespace

FlexGrid::FlexGrid(sheet::Grid& grid, QWidget* parent)
    : QTableView(parent), m_grid(grid), m_model(new GridModel(grid, this)), m_cells(grid) {
    setVerticalHeader(new RowNumbers(this));
    setModel(m_model);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false); // the cells draw their lines
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setSelectionMode(ContiguousSelection);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setMouseTracking(true);
    viewport()->setMouseTracking(true);
    setAttribute(Qt::WA_InputMethodEnabled);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setMinimumSectionSize(1);
    m_model->pending = [this] { schedule(); };
    flush();
}

FlexGrid::~FlexGrid() {
    m_model->pending = nullptr;
}

int FlexGrid::fullWidth() const {
    int width = 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
    if (m_numbered) width += verticalHeader()->width();
    for (int col = 0; col < m_grid.Cols(); ++col)
        width += columnPixels(m_grid.ColWidth(col), font());
    return width;
}

void FlexGrid::schedule() {
    if (std::exchange(m_scheduled, true)) return;
    QTimer::singleShot(0, this, [this] { flush(); });
}

void FlexGrid::flush() {
    m_scheduled = false;
    executeDelayedItemsLayout(); // what waits there is more than rows that come below
    m_model->flush();
    applyFont();
    applyNumbers();
    applyWidths();
    if (m_grid.Visible()) showCursor();
    // A command hides the grid only while it runs; the widget follows when the grid stays hidden.
    if (isHidden() == m_grid.Visible()) setVisible(m_grid.Visible());
    if (flushed) flushed();
}

/// The model adds rows below the last one alone; anything else is a reset.
void FlexGrid::rowsInserted(const QModelIndex& parent, int start, int end) {
    QTableView::rowsInserted(parent, start, end);
    m_firstAdded = start;
    executeDelayedItemsLayout();
    m_firstAdded.reset();
}

/// Rows that came below leave what is in sight as it is, so that it can be scrolled and is not painted anew.
void FlexGrid::doItemsLayout() {
    if (!m_firstAdded) return QTableView::doItemsLayout();
    updateGeometries();
    verticalHeader()->setOffset(verticalScrollBar()->value());
    const int top = rowViewportPosition(*m_firstAdded);
    viewport()->update(
        viewport()->rect().intersected(QRect(0, top, viewport()->width(), viewport()->height())));
}

void FlexGrid::applyFont() {
    if (std::exchange(m_fontSize, m_grid.FontSize()) == m_grid.FontSize()) return;
    QFont face = font();
    face.setPointSizeF(scaled(m_grid.FontSize()));
    setFont(face);
    verticalHeader()->setFont(face);
    face.setBold(true);
    horizontalHeader()->setFont(face);
    const int height = QFontMetrics(face).height();
    verticalHeader()->setMinimumSectionSize(height + 5);
    verticalHeader()->setDefaultSectionSize(height + 5);
    horizontalHeader()->setFixedHeight(height + 10);
    verticalScrollBar()->setSingleStep(height + 5);
    m_widths.clear();
    m_numberedRows = 0;
}

void FlexGrid::showRowNumbers() {
    m_numbered = true;
    QHeaderView* numbers = verticalHeader();
    numbers->setSectionsClickable(false);
    numbers->setHighlightSections(true);
    numbers->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    numbers->setAccessibleName(text("Row numbers"));
    numbers->show();
    QObject::connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
        const bool out =
            value > 0 && columnViewportPosition(sheet::Chainage) + columnWidth(sheet::Chainage) <= 0;
        if (out == m_model->numbersWithChainage()) return;
        m_model->setNumbersWithChainage(out);
        m_numberedRows = 0;
        applyNumbers();
    });
    applyNumbers();
}

// As wide as the last number needs; it grows by digits, not by rows.
void FlexGrid::applyNumbers() {
    if (!m_numbered || std::exchange(m_numberedRows, m_grid.Rows()) == m_grid.Rows()) return;
    const QString digits(std::max<qsizetype>(3, QString::number(m_grid.Rows() - 1).size()), u'0');
    const QString widest = m_model->numbersWithChainage() ? digits + QStringLiteral("  00-0000") : digits;
    QFont face = font();
    face.setBold(true); // of the row with the cursor
    const int width = QFontMetrics(face).horizontalAdvance(widest) + 4 * CellPainter::padding;
    if (verticalHeader()->width() == width) return;
    verticalHeader()->setFixedWidth(width);
    m_widths.clear();
    updateGeometries();
}

void FlexGrid::applyWidths() {
    std::vector<int> widths;
    widths.reserve(std::size_t(m_grid.Cols()));
    for (int col = 0; col < m_grid.Cols(); ++col)
        widths.push_back(m_grid.ColWidth(col));
    if (widths == m_widths) return;
    m_widths = std::move(widths);

    // Remark takes what the others leave.
    int left = viewport()->width();
    for (int col = 0; col < m_grid.Cols(); ++col) {
        const int width = columnPixels(m_widths[std::size_t(col)], font());
        setColumnHidden(col, width == 0);
        if (col == sheet::Remark) continue;
        setColumnWidth(col, width);
        left -= width;
    }
    if (m_grid.Cols() <= sheet::Remark) return;
    setColumnWidth(sheet::Remark, std::max(left, columnPixels(m_widths[sheet::Remark], font())));
}

void FlexGrid::showCursor() {
    const Cell cursor{m_grid.Row(), m_grid.Col()};
    const Cell end{m_grid.RowSel(), m_grid.ColSel()};
    const QModelIndex from = m_model->index(cursor.row - 1, cursor.col);
    const QModelIndex to = m_model->index(end.row - 1, end.col);
    const bool same = cursor.row == m_shownCursor.row && cursor.col == m_shownCursor.col &&
                      end.row == m_shownEnd.row && end.col == m_shownEnd.col && currentIndex() == to;
    if (same) return;
    updateCursorCells();
    m_shownCursor = cursor;
    m_shownEnd = end;
    selectionModel()->setCurrentIndex(to, QItemSelectionModel::NoUpdate);
    selectionModel()->select(QItemSelection(from, to), QItemSelectionModel::ClearAndSelect);
    updateCursorCells();
    scrollTo(to);
}

void FlexGrid::updateCursorCells() {
    const QModelIndex cursor = m_model->index(m_shownCursor.row - 1, m_shownCursor.col);
    const QModelIndex end = m_model->index(m_shownEnd.row - 1, m_shownEnd.col);
    viewport()->update(visualRect(cursor).united(visualRect(end)));
}

bool FlexGrid::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QTableView::viewportEvent(event);
    // A text that its cell cuts short is shown whole under the pointer.
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const QModelIndex cell = indexAt(help.pos());
    const QString whole = cell.data().toString();
    const bool cut =
        fontMetrics().horizontalAdvance(whole) > visualRect(cell).width() - 2 * CellPainter::padding - 1;
    QToolTip::showText(help.globalPos(),
                       cut ? QStringLiteral("<span>%1</span>").arg(whole.toHtmlEscaped()) : QString(),
                       viewport());
    return true;
}

void FlexGrid::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setFont(font());
    m_cells.begin(*this);
    const QRect& dirty = event->rect();
    const int height = verticalHeader()->defaultSectionSize();
    const int rows = std::min(m_model->rowCount(), m_grid.Rows() - 1);
    for (int row = std::max(0, verticalHeader()->logicalIndexAt(dirty.top())); row < rows; ++row) {
        const int top = verticalHeader()->sectionViewportPosition(row);
        if (top > dirty.bottom()) break;
        for (int col = 0; col < m_grid.Cols(); ++col) {
            const QRect box(columnViewportPosition(col), top, columnWidth(col), height);
            if (!box.isEmpty() && event->region().intersects(box)) m_cells.paint(painter, box, row + 1, col);
        }
    }
}

void FlexGrid::resizeEvent(QResizeEvent* event) {
    const QRect cursor = visualRect(currentIndex());
    const bool seen = QRect(QPoint(), event->oldSize()).intersects(cursor);
    QTableView::resizeEvent(event);
    if (seen) scrollTo(currentIndex()); // a bar or a pane was opened
    m_widths.clear();
    applyWidths();
}

void FlexGrid::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    updateCursorCells();
}

void FlexGrid::focusOutEvent(QFocusEvent* event) {
    QTableView::focusOutEvent(event);
    updateCursorCells();
}

void FlexGrid::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::StyleChange) {
        m_fontSize = 0;
        schedule();
    }
}

} // namespace shell
