#include "levels_pane.h"

#include "../controls/makers.h"
#include "../controls/metrics.h"
#include "../text.h"
#include "level_models.h"

#include "survey/rise_and_fall.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSplitter>
#include <QTableView>

#include <algorithm>
#include <chrono>

namespace shell {
namespace {

constexpr std::chrono::milliseconds untilKeysRest{300};
constexpr int rowsMeasured = 20; // for the width of a column

} // namespace

LevelsPane::LevelsPane(const sheet::Grid& grid, survey::Runs& runs)
    : m_grid(grid), m_runs(runs), m_sections(new SectionModel(runs)), m_levels(new RowLevelModel(runs)) {
    m_sections->setParent(this);
    m_levels->setParent(this);
    setObjectName(QStringLiteral("levelsPane"));
    m_verdict = new QLabel;
    m_verdict->setObjectName(QStringLiteral("lblClosing"));
    m_verdict->setAccessibleDescription(text("Verdict"));
    m_verdict->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_verdict->setFocusPolicy(Qt::StrongFocus);
    m_verdict->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // long texts widen no window
    auto* sections = makeTable("tblSections", "Sections of the run");
    sections->setModel(m_sections);
    sections->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                              QAbstractItemView::AnyKeyPressed);
    sections->setSelectionBehavior(QAbstractItemView::SelectRows);
    sections->setSelectionMode(QAbstractItemView::SingleSelection);
    sections->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    sections->horizontalHeader()->setStretchLastSection(true);
    sections->verticalHeader()->hide();
    const auto go = [this](const QModelIndex& index) {
        if (const auto* section = m_sections->at(index.row()); section != nullptr && chosen)
            chosen(section->toRow);
    };
    QObject::connect(sections, &QTableView::clicked, this, [go](const QModelIndex& index) {
        if (index.column() != SectionModel::Length) go(index);
    });
    QObject::connect(sections, &QTableView::activated, this, [go](const QModelIndex& index) {
        if (index.column() != SectionModel::Length) go(index);
    });
    m_sections->lengthTyped = [this](std::size_t number, double km) {
        changeClosing([&](survey::Closing& closing) {
            if (closing.lengthsKm.size() <= number) closing.lengthsKm.resize(number + 1);
            closing.lengthsKm[number] = km;
        });
    };
    auto* levels = makeTable("tblLevels", "Levels of the rows in sight");
    levels->setModel(m_levels);
    levels->setSelectionMode(QAbstractItemView::NoSelection);
    levels->setFocusPolicy(Qt::NoFocus);
    for (QTableView* table : {sections, levels}) {
        table->horizontalHeader()->setResizeContentsPrecision(rowsMeasured);
        const auto fit = [table] { table->resizeColumnsToContents(); };
        QObject::connect(table->model(), &QAbstractItemModel::modelReset, table, fit);
        QObject::connect(table->model(), &QAbstractItemModel::dataChanged, table, fit);
    }

    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(sections);
    splitter->addWidget(levels);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({600, 300});
    splitter->setChildrenCollapsible(false);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(margin, gap, margin, margin);
    all->setSpacing(gap);
    all->addWidget(m_verdict);
    all->addWidget(buildChoices());
    all->addWidget(splitter, 1);
    m_rest.setSingleShot(true);
    m_rest.setInterval(untilKeysRest);
    QObject::connect(&m_rest, &QTimer::timeout, this, [this] { showCheck(); });
    showClosing();
}

QTableView* LevelsPane::makeTable(const char* name, const char* spoken) {
    auto* table = new QTableView;
    table->setObjectName(QLatin1String(name));
    table->setAccessibleName(text(spoken));
    table->setWordWrap(false);
    table->setTabKeyNavigation(false);
    table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 2 * gap);
    table->setMinimumHeight(4 * table->fontMetrics().height());
    return table;
}

QWidget* LevelsPane::buildChoices() {
    auto* bar = new QWidget;
    auto* line = new QHBoxLayout(bar);
    line->setContentsMargins(0, 0, 0, 0);
    m_class = makeCombo("cboClass", "Tolerance");
    m_class->setToolTip(text("A class, or your own rule in mm: 2+5rK, 5rN, 8 or none"));
    for (const survey::ToleranceClass& each : survey::toleranceClasses())
        m_class->addItem(text(each.name));
    m_class->addItem(text("None"));
    m_class->setEditable(true);
    m_class->lineEdit()->setAccessibleName(m_class->accessibleName()); // it is the one that has the focus
    m_class->setInsertPolicy(QComboBox::NoInsert);
    m_class->setMinimumContentsLength(20);
    QObject::connect(m_class, &QComboBox::activated, this, [this] { takeRule(); });
    QObject::connect(m_class->lineEdit(), &QLineEdit::editingFinished, this, [this] { takeRule(); });
    m_method = makeCombo("cboMethod", "Adjustment");
    m_method->addItems({text("By set-ups"), text("By distance")});
    QObject::connect(m_method, &QComboBox::activated, this, [this](int index) {
        changeClosing([&](survey::Closing& closing) {
            closing.method = index == 1 ? survey::Method::Distance : survey::Method::Setups;
        });
    });
    line->addWidget(makeLabel("Tolerance", *m_class));
    line->addWidget(m_class);
    line->addSpacing(groupGap);
    line->addWidget(makeLabel("Adjustment", *m_method));
    line->addWidget(m_method);
    line->addStretch(1);
    return bar;
}

void LevelsPane::changeClosing(const std::function<void(survey::Closing&)>& change) {
    survey::Closing closing = m_runs.closing();
    change(closing);
    if (closing == m_runs.closing()) return;
    m_runs.setClosing(std::move(closing));
    showClosing();
    if (closingChanged) closingChanged();
}

/// What the box says: a class by its name, or a rule that was typed. Anything else is taken back.
void LevelsPane::takeRule() {
    const int index = m_class->findText(m_class->currentText(), Qt::MatchFixedString);
    const auto classes = survey::toleranceClasses();
    std::optional<survey::Tolerance> rule = survey::toleranceFrom(toUtf8(m_class->currentText()));
    if (index >= 0 && std::size_t(index) < classes.size()) rule = classes[std::size_t(index)].tolerance;
    if (rule) changeClosing([&](survey::Closing& closing) { closing.tolerance = *rule; });
    showClosing();
}

void LevelsPane::showClosing() {
    const survey::Closing& closing = m_runs.closing();
    const auto classes = survey::toleranceClasses();
    const auto known = std::ranges::find(classes, closing.tolerance, &survey::ToleranceClass::tolerance);
    if (known != classes.end())
        m_class->setCurrentIndex(int(known - classes.begin()));
    else if (closing.tolerance.per == survey::Tolerance::Per::None)
        m_class->setCurrentIndex(int(classes.size()));
    else
        m_class->setEditText(fromUtf8(survey::toleranceText(closing.tolerance)));
    m_method->setCurrentIndex(closing.method == survey::Method::Distance ? 1 : 0);
}

QSize LevelsPane::sizeHint() const {
    constexpr int lines = 11;
    return {QWidget::sizeHint().width(), lines * fontMetrics().lineSpacing()};
}

void LevelsPane::setRiseAndFall(bool shown) {
    m_riseAndFall = shown;
    m_levels->setRiseAndFall(shown);
    m_checked = 0;
}

void LevelsPane::follow(int firstRow, int lastRow) {
    m_sections->refresh();
    m_levels->setRows(firstRow, lastRow);
    if (m_riseAndFall) {
        if (m_checked != m_runs.version()) m_rest.start();
        return;
    }
    // The worst section speaks for the run.
    const auto& sections = m_runs.sections();
    const auto worst = std::ranges::find(sections, survey::Verdict::Fails, &survey::RunSection::verdict);
    QString said = text("No known level that anything was sighted from");
    if (worst != sections.end())
        said = fromUtf8(describe(*worst));
    else if (!sections.empty())
        said = fromUtf8(describe(sections.back()));
    if (m_runs.stoppedAt() > 0)
        said = text("The run stops in row %1: a text there is no number").arg(m_runs.stoppedAt());
    m_verdict->setText(said);
    m_verdict->setToolTip(said);
}

void LevelsPane::showCheck() {
    m_checked = m_runs.version();
    const QString said = fromUtf8(describe(survey::checkRiseAndFall(m_grid, m_runs)));
    m_verdict->setText(said);
    m_verdict->setToolTip(said);
}

} // namespace shell
