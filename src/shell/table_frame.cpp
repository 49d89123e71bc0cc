#include "table_frame.h"

#include "controls/box_strip.h"
#include "controls/makers.h"
#include "controls/metrics.h"
#include "text.h"

#include "exchange/column_profiles.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace shell {
namespace {

constexpr int shownRows = 20;
constexpr int shownColumns = 60;

} // namespace

TableFrame::TableFrame(const QString& file, tables::Table table, Read read, std::string profiles,
                       const sheet::Grid& grid, QWidget* parent)
    : ImportFrame(QStringLiteral("importPanel"), file, grid, parent),
      m_table(std::move(table)),
      m_read(std::move(read)),
      m_profiles(std::move(profiles)) {
    m_sheets = makeCombo("cboSheet");
    for (const std::string& sheet : m_table.sheets)
        m_sheets->addItem(fromUtf8(sheet));
    m_sheets->setCurrentIndex(static_cast<int>(m_table.sheet));
    m_sheets->setEnabled(m_table.sheets.size() > 1);
    m_heading = new QSpinBox;
    m_heading->setObjectName(QStringLiteral("spnHeading"));
    m_heading->setRange(0, tables::mostRows);
    m_heading->setSpecialValueText(text("none"));
    m_heading->setKeyboardTracking(false);
    auto* line = new QHBoxLayout;
    QLabel* sheets = makeLabel("&Sheet:", *m_sheets);
    line->addWidget(sheets);
    line->addWidget(m_sheets, 1);
    line->addWidget(makeLabel("Heading in ro&w:", *m_heading));
    line->addWidget(m_heading);
    line->addStretch();
    if (m_table.separator != 0) { // text in columns is one sheet
        sheets->hide();
        m_sheets->hide();
    }
    upper().addLayout(line);

    m_preview = new QTableWidget;
    m_preview->setObjectName(QStringLiteral("tblPreview"));
    m_preview->setAccessibleName(text("The first rows of the sheet; above each column what it is"));
    m_preview->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_preview->setSelectionMode(QAbstractItemView::NoSelection);
    m_preview->setTabKeyNavigation(false);
    m_preview->verticalHeader()->setDefaultSectionSize(m_preview->fontMetrics().height() + 2 * gap);
    m_strip = new BoxStrip(*m_preview);
    auto* whole = new QVBoxLayout;
    whole->setSpacing(0);
    whole->addWidget(m_strip);
    whole->addWidget(m_preview, 1);
    upper().addLayout(whole, 1);

    m_remember = makeCheckBox("chkRemember", "Re&member for this heading");
    addBeside(m_remember);
    QObject::connect(m_sheets, &QComboBox::activated, this, [this](int index) { chooseSheet(index); });
    QObject::connect(m_heading, &QSpinBox::valueChanged, this, [this](int row) { chooseHeading(row); });
    showTable();
}

void TableFrame::chooseSheet(int index) {
    try {
        m_table = m_read(m_table.sheets[static_cast<std::size_t>(index)]);
        showTable();
    } catch (const std::exception& error) {
        m_sheets->setCurrentIndex(static_cast<int>(m_table.sheet));
        showNotes({{error.what(), true}});
    }
}

void TableFrame::showTable() {
    const QSignalBlocker quiet(m_heading);
    const int row = exchange::guessHeadingRow(m_table);
    m_heading->setValue(row);
    chooseHeading(row);
}

void TableFrame::chooseHeading(int row) {
    m_layout = exchange::guessLayout(m_table, row);
    m_remember->setChecked(exchange::recallColumns(m_profiles, m_layout));
    m_remember->setEnabled(row > 0);
    fillPreview();
    fillBoxes();
    takeColumns();
}

std::size_t TableFrame::firstShown() const {
    const auto from = std::ranges::find_if(
        m_table.rows, [this](const tables::Row& row) { return row.number >= m_layout.headingRow; });
    return static_cast<std::size_t>(from - m_table.rows.begin());
}

void TableFrame::fillPreview() {
    const std::size_t first = firstShown();
    const auto count = static_cast<int>(std::min<std::size_t>(m_table.rows.size() - first, shownRows));
    const int columns = std::min(static_cast<int>(m_layout.columns.size()), shownColumns);
    m_preview->clear();
    m_preview->setRowCount(count);
    m_preview->setColumnCount(columns);
    QStringList names;
    for (int k = 0; k < count; ++k) {
        const tables::Row& row = m_table.rows[first + static_cast<std::size_t>(k)];
        names += QString::number(row.number);
        const bool isHeading = row.number < m_layout.firstRow && m_layout.headingRow > 0;
        for (int column = 0; column < std::min(columns, static_cast<int>(row.cells.size())); ++column) {
            const tables::Cell& cell = row.cells[static_cast<std::size_t>(column)];
            auto* item = new QTableWidgetItem(fromUtf8(cell.shown));
            QFont font = item->font();
            font.setBold(isHeading);
            item->setFont(font);
            if (cell.kind == tables::CellKind::Number)
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            m_preview->setItem(k, column, item);
        }
    }
    m_preview->setVerticalHeaderLabels(names);
    QStringList letters;
    for (int column = 1; column <= columns; ++column)
        letters += fromUtf8(tables::columnName(column));
    m_preview->setHorizontalHeaderLabels(letters);
}

void TableFrame::fillBoxes() {
    std::vector<QWidget*> boxes, order{m_sheets, m_heading, m_preview};
    for (int column = 0; column < m_preview->columnCount(); ++column) {
        auto* box = new QComboBox;
        box->setObjectName(QStringLiteral("cboCol%1").arg(column));
        // A box without a label is read out by its choice and its description.
        box->setAccessibleName(text("Column %1").arg(fromUtf8(tables::columnName(column + 1))));
        box->setAccessibleDescription(box->accessibleName());
        for (int kind = 0; kind < exchange::columnKinds; ++kind)
            box->addItem(text(exchange::captionOf(static_cast<exchange::ColumnKind>(kind))));
        const auto at = static_cast<std::size_t>(column);
        box->setCurrentIndex(static_cast<int>(m_layout.columns[at]));
        QObject::connect(box, &QComboBox::currentIndexChanged, this, [this, at](int kind) {
            m_layout.columns[at] = static_cast<exchange::ColumnKind>(kind);
            takeColumns();
        });
        boxes.push_back(box);
        order.push_back(box);
    }
    m_strip->setBoxes(std::move(boxes));
    setTabOrders(std::move(order));
}

void TableFrame::takeColumns() {
    m_taken = exchange::takeTable(m_table, m_layout);
    showNotes(m_taken.notes);
}

void TableFrame::giveFocus() {
    m_preview->setFocus();
}

void TableFrame::accepted() {
    if (m_remember->isChecked() && m_layout.headingRow > 0) exchange::rememberColumns(m_profiles, m_layout);
}

} // namespace shell
