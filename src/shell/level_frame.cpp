#include "level_frame.h"

#include "controls/makers.h"
#include "controls/metrics.h"
#include "text.h"

#include "basic/numbers.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QVBoxLayout>

#include <array>

namespace shell {
namespace {

constexpr std::array columns{"Line", "From", "To", "Set-ups", "By readings", "By the file", "Difference, mm"};

QString metres(const std::optional<double>& level) {
    return level ? fromUtf8(basic::format(*level, basic::pattern("#0.0000#"))) : QString();
}

} // namespace

LevelFrame::LevelFrame(const QString& file, exchange::LevelFile levels, const sheet::Grid& grid,
                       QWidget* parent)
    : ImportFrame(QStringLiteral("levelPanel"), file, grid, parent), m_file(std::move(levels)) {
    QString about = fromUtf8(m_file.format);
    for (const std::string& note : m_file.notes)
        about += QStringLiteral("; ") + fromUtf8(note);
    auto* format = new QLabel(about);
    format->setObjectName(QStringLiteral("lblFormat"));
    format->setWordWrap(true);
    upper().addWidget(format);
    m_lines = new QTableWidget(static_cast<int>(m_file.lines.size()), static_cast<int>(columns.size()));
    m_lines->setObjectName(QStringLiteral("tblLines"));
    m_lines->setAccessibleName(text("Lines of the file"));
    m_lines->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_lines->setSelectionMode(QAbstractItemView::SingleSelection);
    m_lines->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_lines->setTabKeyNavigation(false);
    m_lines->verticalHeader()->setDefaultSectionSize(m_lines->fontMetrics().height() + 2 * gap);
    upper().addWidget(m_lines, 1);
    m_points = makeLine("txtPoints");
    m_points->setPlaceholderText(QStringLiteral("KKMMM+oo"));
    m_take = makeCheckBox("chkTake", "Take it &all the same");
    auto* line = new QHBoxLayout;
    line->addWidget(makeLabel("&Point names tell chainage and offset as:", *m_points));
    line->addWidget(m_points, 1);
    line->addWidget(m_take);
    upper().addLayout(line);
    fillLines();
    QObject::connect(m_lines, &QTableWidget::itemSelectionChanged, this, [this] {
        m_take->setChecked(false);
        takeLine();
    });
    QObject::connect(m_points, &QLineEdit::textChanged, this, [this] { takeLine(); });
    QObject::connect(m_take, &QCheckBox::toggled, this, [this] { takeLine(); });
    setTabOrders({m_lines, m_points, m_take});
    m_lines->selectRow(0);
}

void LevelFrame::giveFocus() {
    m_lines->setFocus();
}

void LevelFrame::fillLines() {
    QStringList captions;
    for (const char* caption : columns)
        captions += text(caption);
    m_lines->setHorizontalHeaderLabels(captions);
    for (int row = 0; row < m_lines->rowCount(); ++row) {
        const exchange::LevelLine& line = m_file.lines[static_cast<std::size_t>(row)];
        QString difference;
        if (line.byReadings && line.byLevels)
            difference = fromUtf8(basic::format(
                (*line.byReadings - *line.byLevels) * (line.feet ? 304.8 : 1000), basic::pattern("#0.00")));
        const QStringList cells{text("%1 %2").arg(line.firstLine).arg(fromUtf8(line.method)),
                                fromUtf8(line.from()),
                                fromUtf8(line.to()),
                                QString::number(line.setUps),
                                metres(line.byReadings),
                                metres(line.byLevels),
                                difference};
        for (int column = 0; column < cells.size(); ++column) {
            auto* item = new QTableWidgetItem(cells[column]);
            if (column > 2) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            QFont font = item->font();
            font.setBold(!line.troubles.empty());
            item->setFont(font);
            m_lines->setItem(row, column, item);
        }
    }
    m_lines->resizeColumnsToContents();
    for (const int name : {1, 2})
        m_lines->horizontalHeader()->setSectionResizeMode(name, QHeaderView::Stretch);
}

void LevelFrame::takeLine() {
    const int row = std::max(0, m_lines->currentRow());
    const exchange::LevelLine& line = m_file.lines[static_cast<std::size_t>(row)];
    m_take->setVisible(!line.troubles.empty());
    std::vector<exchange::ImportNote> notes;
    for (const std::string& trouble : line.troubles)
        notes.push_back({trouble, true});
    for (const std::string& stray : m_file.strays)
        notes.push_back({stray, true});
    for (const std::string& hint : line.hints)
        notes.push_back({hint, false});
    const std::string form = toUtf8(m_points->text());
    const auto points = exchange::PointForm::parse(form);
    if (!form.empty() && !points)
        notes.push_back({"\"" + form + "\" is no form of point names such as KKMMM+oo", false});
    m_rows.clear();
    if (line.troubles.empty() || m_take->isChecked())
        m_rows = exchange::levelRows(line, points.value_or(exchange::PointForm()));
    showNotes(std::move(notes));
}

} // namespace shell
