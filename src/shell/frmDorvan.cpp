#include "frmDorvan.h"

#include "controls/makers.h"
#include "text.h"

#include "project/default_folder.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeView>
#include <QVBoxLayout>

namespace shell {

frmDorvan::frmDorvan(project::Book& book, desktop::Desktop& desktop, QWidget* parent)
    : QDialog(parent),
      m_book(book),
      m_desktop(desktop),
      m_Drive1(makeCombo("Drive1", "Drive", this)),
      m_Dir1(new QTreeView(this)),
      m_folders(new QFileSystemModel(this)),
      m_txtPath(makeLine("txtPath", "Path of the folder", this)),
      m_lblDD(new QLabel(this)),
      m_cmdOK(nullptr) {
    setObjectName(QStringLiteral("frmDorvan"));
    setWindowTitle(text("Select Default Drive & Directory"));
    buildControls();
    Form_Load();
}

void frmDorvan::buildControls() {
    for (const QFileInfo& drive : QDir::drives())
        m_Drive1->addItem(drive.absoluteFilePath());
    m_Drive1->setVisible(m_Drive1->count() > 1);

    m_folders->setFilter(QDir::Dirs | QDir::Drives | QDir::NoDotAndDotDot);
    m_folders->setRootPath(QString());
    m_Dir1->setObjectName(QStringLiteral("Dir1"));
    m_Dir1->setAccessibleName(text("Folders"));
    m_Dir1->setModel(m_folders);
    m_Dir1->setHeaderHidden(true);
    for (int column = 1; column < m_folders->columnCount(); ++column)
        m_Dir1->hideColumn(column);

    auto* existing = new QLabel(text("Your Existing Sub-Directory is :"), this);
    existing->setObjectName(QStringLiteral("Label1"));
    m_lblDD->setObjectName(QStringLiteral("lblDD"));
    m_lblDD->setAccessibleDescription(text("Chosen folder"));
    m_lblDD->setTextFormat(Qt::PlainText);
    m_lblDD->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(this);
    m_cmdOK = buttons->addButton(text("OK"), QDialogButtonBox::AcceptRole);
    m_cmdOK->setObjectName(QStringLiteral("cmdOK"));
    auto* cancel = buttons->addButton(text("Cancel"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* layout = new QVBoxLayout(this);
    for (QWidget* widget : {static_cast<QWidget*>(existing), static_cast<QWidget*>(m_lblDD),
                            static_cast<QWidget*>(m_Drive1), static_cast<QWidget*>(m_txtPath)})
        layout->addWidget(widget);
    layout->addWidget(m_Dir1, 1);
    layout->addWidget(buttons);
    // Down the window, the buttons last.
    const std::initializer_list<QWidget*> order{m_Drive1, m_txtPath, m_Dir1, m_cmdOK, cancel};
    for (auto next = order.begin() + 1; next != order.end(); ++next)
        setTabOrder(*(next - 1), *next);
    const QSize letter(fontMetrics().averageCharWidth(), fontMetrics().height());
    resize(64 * letter.width(), 28 * letter.height());

    QObject::connect(m_Drive1, &QComboBox::currentTextChanged, this, [this] { Drive1_Change(); });
    QObject::connect(m_Dir1->selectionModel(), &QItemSelectionModel::currentChanged, this,
                     [this](const QModelIndex& now) { Dir1_Change(m_folders->filePath(now)); });
    // The folders are read and sorted later, and push the chosen one out of sight until the user moves.
    QObject::connect(m_folders, &QFileSystemModel::layoutChanged, this, [this] {
        if (m_arriving) m_Dir1->scrollTo(m_Dir1->currentIndex(), QAbstractItemView::PositionAtCenter);
    });
    QObject::connect(m_Dir1, &QTreeView::expanded, this, [this] { m_arriving = false; });
    QObject::connect(m_Dir1, &QTreeView::collapsed, this, [this] { m_arriving = false; });
    QObject::connect(m_txtPath, &QLineEdit::textEdited, this,
                     [this](const QString& path) { txtPath_Change(path); });
    QObject::connect(buttons, &QDialogButtonBox::accepted, this, [this] { cmdOK_Click(); });
    QObject::connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void frmDorvan::Form_Load() {
    m_folder = m_book.DefaultFolder;
    try {
        m_folder = project::loadFolderForDialog(m_desktop);
    } catch (const basic::RuntimeError& error) {
        m_desktop.status("The default folder was not read: " + error.told());
    }
    m_lblDD->setText(fromUtf8(m_folder));
    const QString start = fromUtf8(project::nearestFolder(m_folder));
    m_txtPath->setText(start);
    const QSignalBlocker noDrive(m_Drive1);
    for (int drive = 0; drive < m_Drive1->count(); ++drive)
        if (start.startsWith(m_Drive1->itemText(drive), Qt::CaseInsensitive))
            m_Drive1->setCurrentIndex(drive);
    goTo(start);
    m_Dir1->setFocus();
}

void frmDorvan::goTo(const QString& folder) {
    const QSignalBlocker ownMove(m_Dir1->selectionModel());
    const QModelIndex place = m_folders->index(folder);
    m_Dir1->setCurrentIndex(place);
    m_Dir1->expand(place);
    m_Dir1->scrollTo(place, QAbstractItemView::PositionAtCenter);
    m_Dir1->viewport()->update();
    m_arriving = true;
}

void frmDorvan::Drive1_Change() {
    goTo(m_Drive1->currentText());
    Dir1_Change(m_Drive1->currentText());
}

void frmDorvan::Dir1_Change(const QString& folder) {
    m_arriving = false;
    m_choice = toUtf8(folder);
    m_txtPath->setText(folder);
    m_cmdOK->setEnabled(true);
}

void frmDorvan::txtPath_Change(const QString& path) {
    const QString trimmed = path.trimmed();
    const bool isFolder = QDir::isAbsolutePath(trimmed) && QFileInfo(trimmed).isDir();
    m_cmdOK->setEnabled(isFolder);
    if (!isFolder) return;
    m_choice = toUtf8(QDir::cleanPath(trimmed));
    goTo(trimmed);
}

void frmDorvan::cmdOK_Click() {
    if (!m_choice.empty()) m_folder = m_choice;
    m_lblDD->setText(fromUtf8(m_folder));
    project::chooseDefaultFolder(m_book, m_desktop, m_folder);
    accept();
}

} // namespace shell
