#include "qt_desktop.h"

#include "basic/files.h"
#include "project/program_folder.h"
#include "text.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QStandardPaths>

#include <algorithm>

namespace shell {
namespace {

constexpr const char* projectFilter = "*.grl";
constexpr const char* importFilter = "*.xlsx *.xlsm *.ods *.csv *.txt *.tsv *.gsi *.m5 *.dat *.raw";
constexpr int inputWidth = 340; // room for a number and for the box's title

desktop::Answer answerOf(int button) {
    switch (button) {
    case QMessageBox::Yes:
        return desktop::Answer::Yes;
    case QMessageBox::No:
        return desktop::Answer::No;
    case QMessageBox::Cancel:
        return desktop::Answer::Cancel;
    default:
        return desktop::Answer::Ok;
    }
}

/// "km 1.750" is a name without an ending, and so is "St. Mary": only a point and three letters are one.
QString withProjectEnding(const QString& path) {
    const QString ending = path.right(4);
    const bool has = ending.size() == 4 && ending[0] == u'.' &&
                     std::all_of(ending.begin() + 1, ending.end(), [](QChar c) { return c.isLetter(); });
    return has ? path : path + QStringLiteral(".grl");
}

} // namespace

QtDesktop::QtDesktop(Surroundings surroundings) : m_surroundings(std::move(surroundings)) {
    if (m_surroundings.programFolder.empty()) m_surroundings.programFolder = project::programFolder();
    if (!m_surroundings.spreadsheet) m_surroundings.spreadsheet = spreadsheet::runningSpreadsheet();
    if (m_surroundings.templateFolder.empty()) m_surroundings.templateFolder = project::shippedFolder();
    m_early =
        fromUtf8(project::prepareProgramFolder(m_surroundings.programFolder, m_surroundings.templateFolder));
}

void QtDesktop::attach(QProgressBar& progress, QLabel& status, QWidget& grid) {
    m_progress = &progress;
    m_status = &status;
    m_grid = &grid;
    if (!m_early.isEmpty()) this->status(toUtf8(m_early));
}

QWidget* QtDesktop::owner() const {
    QWidget* active = QApplication::activeModalWidget();
    if (active == nullptr) active = m_window.data();
    return active != nullptr ? active
                             : QApplication::activeWindow(); // the login, before there is a main window
}

desktop::Answer QtDesktop::messageBox(std::string_view message, desktop::Buttons buttons,
                                      std::string_view title) {
    QMessageBox box(owner());
    box.setTextFormat(Qt::PlainText);
    box.setText(text(message));
    box.setWindowTitle(title.empty() ? QString::fromLatin1(applicationTitle) : text(title));
    box.setIcon(buttons == desktop::Buttons::Ok ? QMessageBox::Information : QMessageBox::Question);
    switch (buttons) {
    case desktop::Buttons::Ok:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case desktop::Buttons::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setEscapeButton(QMessageBox::No);
        break;
    case desktop::Buttons::YesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        box.setEscapeButton(QMessageBox::Cancel);
        break;
    }
    box.setDefaultButton(buttons == desktop::Buttons::Ok ? QMessageBox::Ok : QMessageBox::Yes);
    return answerOf(box.exec());
}

std::string QtDesktop::inputBox(std::string_view prompt, std::string_view title, std::string_view initial) {
    QInputDialog box(owner());
    box.setInputMode(QInputDialog::TextInput);
    box.setWindowTitle(text(title));
    box.setLabelText(text(prompt));
    box.setTextValue(fromUtf8(initial));
    box.resize(box.sizeHint().expandedTo({inputWidth, 0}));
    return box.exec() == QDialog::Accepted ? toUtf8(box.textValue()) : std::string();
}

std::optional<std::string> QtDesktop::fileDialog(desktop::FileDialog kind, std::string_view initialName) {
    const bool importing = kind == desktop::FileDialog::Import;
    const bool open = kind != desktop::FileDialog::Save;
    QFileDialog dialog(owner(), importing ? text("Import from file") : open ? text("Open") : text("Save As"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setAcceptMode(open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile); // also for Open: a missing file is the command's to report
    if (kind == desktop::FileDialog::Open) dialog.setDefaultSuffix(QStringLiteral("grl"));

    const QString name = fromUtf8(initialName);
    const QFileInfo initial(name);
    const QString ownName = initial.fileName();
    const bool otherKind =
        !ownName.isEmpty() && initial.suffix().compare(QLatin1String("grl"), Qt::CaseInsensitive) != 0;
    if (importing)
        dialog.setNameFilters(
            {text("Tables and digital levels (%1)").arg(QLatin1String(importFilter)), text("All files (*)")});
    else if (otherKind)
        dialog.setNameFilters({QStringLiteral("*.") + initial.suffix(), QLatin1String(projectFilter)});
    else
        dialog.setNameFilter(QLatin1String(projectFilter));

    if (name.contains(u'/') && initial.dir().exists()) m_lastFolder = initial.absolutePath();
    if (m_lastFolder.isEmpty())
        m_lastFolder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!QDir(m_lastFolder).exists()) m_lastFolder = QDir::homePath();
    dialog.setDirectory(m_lastFolder);
    if (!ownName.isEmpty() && ownName != QLatin1String(projectFilter)) dialog.selectFile(ownName);
    if (auto* box = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) {
        box->selectAll();
        box->setFocus();
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;

    const QString picked = dialog.selectedFiles().constFirst();
    const QString chosen = open ? picked : withProjectEnding(picked);
    if (QFileInfo(chosen).fileName() == QLatin1String(projectFilter)) return std::nullopt;
    m_lastFolder = QFileInfo(chosen).absolutePath();
    return toUtf8(chosen);
}

std::optional<std::string> QtDesktop::clipboardText() {
    const QMimeData* held = QGuiApplication::clipboard()->mimeData();
    if (held == nullptr || !held->hasText()) return std::nullopt;
    return toUtf8(held->text());
}

void QtDesktop::setClipboardText(std::string_view text) {
    QGuiApplication::clipboard()->setText(fromUtf8(text));
}

void QtDesktop::beep() {
    QApplication::beep();
    if (m_surroundings.beeped) m_surroundings.beeped();
}

void QtDesktop::showProgress() {
    if (!m_progress) return;
    m_progress->setValue(0);
    m_progress->show();
    m_progress->repaint();
}

void QtDesktop::setProgress(float percent) {
    const int whole = std::clamp(int(percent), 0, 100);
    if (!m_progress || whole == m_progress->value()) return;
    m_progress->setValue(whole);
    m_progress->repaint(); // at once: the command does not return to the event loop before its end
}

void QtDesktop::hideProgress() {
    if (m_progress) m_progress->hide();
}

void QtDesktop::status(std::string_view message) {
    ++m_messages;
    if (!m_status) {
        m_early = fromUtf8(message);
        return;
    }
    m_status->setText(text(message));
    m_status->setToolTip(m_status->text());
}

QString QtDesktop::statusText() const {
    return m_status ? m_status->text() : m_early;
}

void QtDesktop::focusGrid() {
    if (m_grid && !m_grid->isHidden()) m_grid->setFocus();
}

bool QtDesktop::moveToTrash(std::string_view path) {
    if (!m_surroundings.hasTrash) return false;
    // Qt makes the trash of the home folder only when the folder above it is there.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    return QFile::moveToTrash(fromUtf8(basic::nativePath(path)));
}

void QtDesktop::endProgram() const {
    if (m_surroundings.endProgram)
        m_surroundings.endProgram();
    else
        QCoreApplication::exit(0);
}

} // namespace shell
