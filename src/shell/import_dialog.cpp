#include "import_dialog.h"

#include "text.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>

namespace shell {
namespace {

constexpr int notesShown = 5;

} // namespace

ImportDialog::ImportDialog(const QString& file, QWidget& window, QWidget& grid) : QDialog(&window) {
    setWindowTitle(text("Import from file: %1").arg(file));
    auto* whole = new QVBoxLayout(this);
    m_upper = new QVBoxLayout;
    whole->addLayout(m_upper, 1);

    m_notes = new QListWidget;
    m_notes->setObjectName(QStringLiteral("lstNotes"));
    m_notes->setAccessibleName(text("What cannot be taken as it stands"));
    m_notes->setWordWrap(true);
    m_notes->setTextElideMode(Qt::ElideNone);
    m_notes->setFixedHeight(notesShown * (m_notes->fontMetrics().height() + 6));
    whole->addWidget(m_notes);

    m_replace = new QRadioButton(text("&Replace the book"));
    m_replace->setObjectName(QStringLiteral("optReplace"));
    m_replace->setChecked(true);
    auto* below = new QRadioButton(text("Add &below"));
    below->setObjectName(QStringLiteral("optBelow"));
    m_line = new QHBoxLayout;
    m_line->addWidget(m_replace);
    m_line->addWidget(below);
    m_line->addStretch();
    whole->addLayout(m_line);

    m_count = new QLabel;
    m_count->setObjectName(QStringLiteral("lblCount"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    m_import = buttons->addButton(text("&Import"), QDialogButtonBox::AcceptRole);
    m_import->setObjectName(QStringLiteral("cmdImport"));
    m_import->setDefault(true);
    auto* last = new QHBoxLayout;
    last->addWidget(m_count, 1);
    last->addWidget(buttons);
    whole->addLayout(last);
    QObject::connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    resize(grid.size().expandedTo(QSize(640, 480)).boundedTo(window.size().expandedTo(QSize(640, 480))));
    move(grid.mapToGlobal(QPoint(0, 0)));
}

exchange::ImportPlace ImportDialog::place() const {
    return m_replace->isChecked() ? exchange::ImportPlace::Replace : exchange::ImportPlace::AddBelow;
}

void ImportDialog::addBeside(QWidget* widget) {
    m_line->addWidget(widget);
}

void ImportDialog::showNotes(const std::vector<exchange::ImportNote>& notes, std::size_t taken) {
    m_notes->clear();
    for (const exchange::ImportNote& note : notes) {
        auto* item = new QListWidgetItem(fromUtf8(note.text), m_notes);
        item->setIcon(style()->standardIcon(note.leavesOut ? QStyle::SP_MessageBoxWarning
                                                           : QStyle::SP_MessageBoxInformation));
    }
    if (notes.empty()) new QListWidgetItem(text("Everything can be taken as it stands."), m_notes);
    m_count->setText(taken == 1 ? text("1 row; Cal reduces the levels afterwards")
                                : text("%1 rows; Cal reduces the levels afterwards").arg(taken));
    m_import->setEnabled(taken > 0);
}

} // namespace shell
