#include "import_frame.h"

#include "controls/command_button.h"
#include "controls/metrics.h"
#include "text.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>
#include <QSpinBox>
#include <QStyle>
#include <QVBoxLayout>

#include <utility>

namespace shell {
namespace {

constexpr int notesShown = 4;
constexpr int longestName = 48;

QString titleOf(const QString& file) {
    const bool isLong = file.size() > longestName;
    const QString shown =
        isLong ? file.left(longestName / 2) + QChar(0x2026) + file.right(longestName / 2) : file;
    return text("Import from file: %1").arg(shown);
}

} // namespace

ImportFrame::ImportFrame(const QString& name, const QString& file, const sheet::Grid& grid, QWidget* parent)
    : Panel(name, titleOf(file), parent), m_grid(grid) {
    auto* content = new QWidget;
    auto* whole = new QVBoxLayout(content);
    whole->setContentsMargins(0, 0, 0, 0);
    m_upper = new QVBoxLayout;
    whole->addLayout(m_upper, 1);

    m_list = new QListWidget;
    m_list->setObjectName(QStringLiteral("lstNotes"));
    m_list->setAccessibleName(text("What cannot be taken as it stands"));
    m_list->setWordWrap(true);
    m_list->setTextElideMode(Qt::ElideNone);
    m_list->setFixedHeight(notesShown * (m_list->fontMetrics().height() + 8));
    whole->addWidget(m_list);

    m_replace = new QRadioButton(text("&Replace the book"));
    m_replace->setObjectName(QStringLiteral("optReplace"));
    m_replace->setChecked(true);
    m_below = new QRadioButton(text("Add &below"));
    m_below->setObjectName(QStringLiteral("optBelow"));
    auto* line = new QHBoxLayout;
    line->setObjectName(QStringLiteral("where"));
    line->addWidget(m_replace);
    line->addWidget(m_below);
    line->addStretch();
    whole->addLayout(line);
    fillWith(content);

    m_count = new QLabel;
    m_count->setObjectName(QStringLiteral("lblCount"));
    m_cancel = new CommandButton(QStringLiteral("cmdNoImport"), text("Cancel"), nullptr);
    m_import = new CommandButton(QStringLiteral("cmdImport"), text("&Import"), nullptr);
    m_import->setDefault(true);
    buttons().insertWidget(0, m_count);
    for (CommandButton* button : {m_cancel, m_import}) {
        button->setMinimumWidth(buttonWidth);
        buttons().addWidget(button);
    }
    QObject::connect(m_replace, &QRadioButton::toggled, this, [this] { showAll(); });
    QObject::connect(m_import, &QPushButton::clicked, this, [this] {
        if (cmdImport_Click) cmdImport_Click();
    });
    QObject::connect(m_cancel, &QPushButton::clicked, this, [this] {
        if (cmdCancel_Click) cmdCancel_Click();
    });
}

exchange::ImportPlace ImportFrame::place() const {
    return m_replace->isChecked() ? exchange::ImportPlace::Replace : exchange::ImportPlace::AddBelow;
}

void ImportFrame::addBeside(QWidget* widget) {
    m_beside = widget;
    findChild<QHBoxLayout*>(QStringLiteral("where"))->addWidget(widget);
}

void ImportFrame::setTabOrders(std::vector<QWidget*> upper) {
    for (QWidget* next :
         {static_cast<QWidget*>(m_list), static_cast<QWidget*>(m_replace), static_cast<QWidget*>(m_below),
          m_beside, static_cast<QWidget*>(m_import), static_cast<QWidget*>(m_cancel)})
        if (next != nullptr) upper.push_back(next);
    for (std::size_t k = 1; k < upper.size(); ++k)
        setTabOrder(upper[k - 1], upper[k]);
}

void ImportFrame::showNotes(std::vector<exchange::ImportNote> notes) {
    m_notes = std::move(notes);
    showAll();
}

void ImportFrame::showAll() {
    std::vector<exchange::ImportNote> notes = m_notes;
    std::size_t count = rows().size();
    bool goes = count > 0;
    if (place() == exchange::ImportPlace::AddBelow) {
        const exchange::Joint joint = exchange::jointBelow(m_grid, rows());
        if (!joint.note.text.empty()) notes.insert(notes.begin(), joint.note);
        goes = goes && !joint.note.leavesOut;
        count -= joint.shares ? 1 : 0;
    }
    m_list->clear();
    for (const exchange::ImportNote& note : notes) {
        auto* item = new QListWidgetItem(fromUtf8(note.text), m_list);
        item->setIcon(style()->standardIcon(note.leavesOut ? QStyle::SP_MessageBoxWarning
                                                           : QStyle::SP_MessageBoxInformation));
    }
    if (notes.empty()) new QListWidgetItem(text("Everything can be taken as it stands."), m_list);
    m_count->setText(count == 1 ? text("1 row; Cal reduces the levels afterwards")
                                : text("%1 rows; Cal reduces the levels afterwards").arg(count));
    m_import->setEnabled(goes);
}

void ImportFrame::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape)
        m_cancel->click();
    else if (enter && qobject_cast<QSpinBox*>(QApplication::focusWidget()) == nullptr) // takes a typed number
        m_import->click();
    else
        Panel::keyPressEvent(event);
}

} // namespace shell
