#include "findings_pane.h"

#include "../controls/makers.h"
#include "../controls/metrics.h"
#include "../text.h"

#include <QApplication>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace shell {
namespace {

constexpr int markRole = Qt::UserRole + 1;
constexpr int rowRole = Qt::UserRole;
// A list that nobody reads to its end need not be built to its end on every key.
constexpr std::size_t mostShown = 2000;

QIcon iconOf(survey::FindingKind kind) {
    const QStyle* style = QApplication::style();
    switch (kind) {
    case survey::FindingKind::Error:
        return style->standardIcon(QStyle::SP_MessageBoxCritical);
    case survey::FindingKind::Warning:
        return style->standardIcon(QStyle::SP_MessageBoxWarning);
    case survey::FindingKind::Hint:
        break;
    }
    return style->standardIcon(QStyle::SP_MessageBoxInformation);
}

QString wordOf(survey::FindingKind kind) {
    QString word = text(survey::word(kind));
    if (!word.isEmpty()) word[0] = word[0].toUpper();
    return word;
}

} // namespace

FindingsPane::FindingsPane()
    : m_list(new QTreeWidget),
      m_aside(makeCheckBox("chkAside", "Show what is set aside")),
      m_staff(new QDoubleSpinBox),
      m_none(new QLabel(text("Nothing looks wrong"))) {
    setObjectName(QStringLiteral("findingsPane"));
    m_list->setObjectName(QStringLiteral("lstFindings"));
    m_list->setAccessibleName(text("Findings"));
    m_list->setColumnCount(3);
    m_list->setHeaderLabels({text("Row"), text("Kind"), text("Finding")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->header()->setStretchLastSection(true);
    QObject::connect(m_list, &QTreeWidget::itemClicked, this, [this] { goToCurrent(); });
    QObject::connect(m_list, &QTreeWidget::itemActivated, this, [this] { goToCurrent(); });
    QPushButton* aside = makeButton("cmdAside", "Set &aside");
    aside->setAutoDefault(false);
    aside->setToolTip(text("Not told again in this book until it changes (Delete)"));
    QObject::connect(aside, &QPushButton::clicked, this, [this] { setCurrentAside(); });
    auto* remove = new QShortcut(QKeySequence(Qt::Key_Delete), m_list);
    remove->setContext(Qt::WidgetShortcut);
    QObject::connect(remove, &QShortcut::activated, this, [this] { setCurrentAside(); });
    QObject::connect(m_aside, &QCheckBox::toggled, this, [this] {
        if (wantsAside) wantsAside();
    });
    m_staff->setObjectName(QStringLiteral("txtStaff"));
    m_staff->setAccessibleName(text("Length of the staff"));
    m_staff->setRange(0.5, 20);
    m_staff->setDecimals(2);
    m_staff->setSingleStep(0.5);
    m_staff->setSuffix(text(" m"));
    m_staff->setKeyboardTracking(false);
    QObject::connect(m_staff, &QDoubleSpinBox::valueChanged, this, [this](double metres) {
        if (staffChanged) staffChanged(metres);
    });
    m_none->setContentsMargins(gap, gap, gap, gap);
    auto* line = new QHBoxLayout;
    line->addWidget(aside);
    line->addWidget(m_aside);
    line->addStretch(1);
    line->addWidget(makeLabel("Staff", *m_staff));
    line->addWidget(m_staff);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(margin, gap, margin, margin);
    all->setSpacing(gap);
    all->addWidget(m_none);
    all->addWidget(m_list, 1);
    all->addLayout(line);
}

bool FindingsPane::showsAside() const {
    return m_aside->isChecked();
}

QSize FindingsPane::sizeHint() const {
    constexpr int lines = 11;
    return {QWidget::sizeHint().width(), lines * fontMetrics().lineSpacing()};
}

void FindingsPane::setStaff(double metres) {
    const QSignalBlocker quiet(m_staff);
    m_staff->setValue(metres);
}

void FindingsPane::show(const std::vector<Entry>& entries, const std::vector<sheet::Notice>& notices) {
    const QTreeWidgetItem* current = m_list->currentItem();
    const QVariant chosenMark = current == nullptr ? QVariant() : current->data(0, markRole);
    const QSignalBlocker quiet(m_list);
    m_list->setUpdatesEnabled(false);
    m_list->clear();
    QList<QTreeWidgetItem*> items;
    const auto add = [&](int row, const QString& kind, const QString& said) {
        auto* item = new QTreeWidgetItem({row > 0 ? QString::number(row) : QString(), kind, said});
        item->setData(0, rowRole, row);
        item->setTextAlignment(0, Qt::AlignRight | Qt::AlignVCenter);
        item->setToolTip(2, said);
        items.push_back(item);
        return item;
    };
    for (std::size_t k = 0; k < std::min(entries.size(), mostShown); ++k) {
        const auto& [finding, aside] = entries[k];
        QString said = fromUtf8(finding.text);
        if (aside) said += text(" (set aside)");
        QTreeWidgetItem* item = add(finding.row, wordOf(finding.kind), said);
        item->setIcon(1, iconOf(finding.kind));
        item->setData(0, markRole, QVariant::fromValue(finding.mark));
    }
    if (entries.size() > mostShown)
        add(0, {}, text("... and %1 more").arg(entries.size() - mostShown))->setFlags(Qt::ItemIsEnabled);
    if (!notices.empty()) {
        QTreeWidgetItem* head = add(0, {}, text("What keys and commands did besides"));
        head->setFlags(Qt::ItemIsEnabled);
        QFont bold = head->font(2);
        bold.setBold(true);
        head->setFont(2, bold);
    }
    for (const sheet::Notice& notice : notices)
        add(notice.row, text("Notice"), fromUtf8(notice.text));
    m_list->addTopLevelItems(items);
    for (QTreeWidgetItem* item : items)
        if (chosenMark.isValid() && item->data(0, markRole) == chosenMark) m_list->setCurrentItem(item);
    for (int column = 0; column < 2; ++column)
        m_list->resizeColumnToContents(column);
    m_list->setUpdatesEnabled(true);
    m_none->setVisible(entries.empty());
}

void FindingsPane::goToCurrent() {
    const QTreeWidgetItem* item = m_list->currentItem();
    if (item == nullptr || !chosen) return;
    if (const int row = item->data(0, rowRole).toInt(); row > 0) chosen(row);
}

void FindingsPane::setCurrentAside() {
    const QTreeWidgetItem* item = m_list->currentItem();
    if (item == nullptr || !setAside) return;
    if (const QVariant mark = item->data(0, markRole); mark.isValid()) setAside(mark.toULongLong());
}

} // namespace shell
