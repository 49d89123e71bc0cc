#include "frmGrl.h"

#include "button_column.h"
#include "controls/command_button.h"
#include "controls/flex_grid.h"
#include "controls/metrics.h"
#include "export_panel.h"
#include "settings_frame.h"
#include "text.h"
#include "window_part.h"

#include "basic/files.h"
#include "entry/entry_settings.h"
#include "exchange/marked_rows.h"
#include "project/default_folder.h"
#include "sheet/cells.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QScreen>
#include <QScrollArea>
#include <QStatusBar>

#include <algorithm>
#include <chrono>
#include <utility>

namespace shell {
namespace {

// What the grid leaves of the window's width and height for the button column and the bars, in twips.
constexpr int besideGrid = 2100;
constexpr int aboveAndBelowGrid = 1110;

constexpr int progressHeight = 10;

constexpr std::chrono::seconds untilKeysRest{1};

} // namespace

frmGrl::frmGrl(QtDesktop desktop)
    : m_offersRecovery(desktop.surroundings().offersRecovery),
      m_stateFolder(desktop.surroundings().stateFolder),
      m_desktop(std::move(desktop)) {
    m_desktop.setWindow(*this);
    setObjectName(QStringLiteral("frmGrl"));
    auto* form = new QWidget;
    form->setObjectName(QStringLiteral("form"));
    form->setMouseTracking(true);
    form->installEventFilter(this);
    setCentralWidget(form);

    m_grid = new FlexGrid(m_book.MSFG, form);
    m_grid->setObjectName(QStringLiteral("MSFG"));
    m_grid->setAccessibleName(text("Field book"));
    m_grid->showRowNumbers();
    listenToGrid();
    m_grid->mouseMove = [this] { MSFG_MouseMove(); };
    m_grid->flushed = [this] {
        showStatus();
        m_keysRest.start(untilKeysRest);
    };
    m_keysRest.setSingleShot(true);
    QObject::connect(&m_keysRest, &QTimer::timeout, this, [this] {
        act({.name = "The recovery copy", .kind = Action::Timer}, [this] { keepRecoveryCopy(); });
    });

    m_pbr1 = new QProgressBar(form);
    m_pbr1->setObjectName(QStringLiteral("pbr1"));
    m_pbr1->setAccessibleName(text("Progress"));
    m_pbr1->setRange(0, 100);
    m_pbr1->setTextVisible(false);
    m_pbr1->hide();

    buildButtons();
    buildMenus();
    buildStatusBar();
    buildFrames();
    buildTabOrder();
    buildParts();
    showBook();
}

frmGrl::~frmGrl() {
    if (isVisible()) m_memory.keep();
    hide();
    m_parts.clear();
    m_grid->flushed = nullptr;
    delete takeCentralWidget(); // the grid's view goes before the book that it shows
}

void frmGrl::Form_Load() {
    m_book.BookChanged = false;
    sheet::writeHeader(m_book.MSFG);
    button("cmdExport").setEnabled(basic::fileExists(desktop::programFile(m_desktop, "Rod.dwg")));
    std::fill_n(m_book.LeftOffsets.begin(), 11, 0.0F);
    std::fill_n(m_book.RightOffsets.begin(), 11, 0.0F);
    m_ff->chkOft_Click();

    const QSize screenSize = screen()->availableGeometry().size();
    const QSize whole(m_grid->fullWidth() + 2 * pixels(besideGrid), 46 * m_grid->fontMetrics().height());
    resize(whole.expandedTo(screenSize * 6 / 10).boundedTo(screenSize * 95 / 100));
    m_memory.restore();
    show();
    button("cmdOpen").setFocus();

    m_book.CurrentSide = 'C';
    entry::readSettings(m_book.settings, m_desktop);
    m_ff->showSettings();
    project::readDefaultFolder(m_book, m_desktop);
    mNu();
    showBook();
    if (m_offersRecovery)
        QTimer::singleShot(0, this, [this] { act({.name = "Recovery"}, [this] { offerRecovery(); }); });
}

void frmGrl::keepRecoveryCopy() {
    if (m_ended) return;
    const std::chrono::milliseconds wait = m_journal.redoSteps() > 0 ? keepCopyAhead() : m_recovery.keep();
    if (wait > std::chrono::milliseconds::zero()) m_keysRest.start(wait);
}

// As long as steps can be done again, the copy holds the book with them.
std::chrono::milliseconds frmGrl::keepCopyAhead() {
    if (m_journal.isOpen()) return untilKeysRest;
    if (m_keptAhead == m_journal.stepsMade()) return {};
    const auto standing = sheet::Standing::of(m_book);
    const int steps = m_journal.redoSteps();
    while (m_journal.redo()) {
    }
    const bool ahead = project::isUnsaved(m_book);
    std::chrono::milliseconds wait{0};
    if (ahead) wait = m_recovery.keep();
    for (int step = 0; step < steps; ++step)
        m_journal.undo();
    standing.restore(m_book);
    if (!ahead) return m_recovery.keep(); // the file has all that redo does
    if (wait == wait.zero()) m_keptAhead = m_journal.stepsMade();
    return wait;
}

void frmGrl::offerRecovery() {
    m_recovery.offer();
}

void frmGrl::Form_Resize() {
    if (HalfScreenRule::leavesAlone(*this)) return;
    arrange();
    m_halfScreen.apply(*this);
}

void frmGrl::arrange() {
    const QWidget* form = centralWidget();
    const int bars = height() - form->height();
    const int beside = std::max(pixels(besideGrid), 3 * margin + m_column->leastWidth());
    const int aboveAndBelow = std::max(pixels(aboveAndBelowGrid), bars + 3 * margin + progressHeight);
    const QRect grid(margin, margin, std::max(1, form->width() - beside),
                     std::max(1, height() - aboveAndBelow));
    m_grid->setGeometry(grid);
    const int columnLeft = grid.right() + 1 + margin;
    m_columnScroll->setGeometry(columnLeft, margin, form->width() - columnLeft - margin,
                                form->height() - 2 * margin);
    const int below = form->height() - grid.bottom() - 1;
    m_pbr1->setGeometry(grid.left(), grid.bottom() + 1 + (below - progressHeight) / 2, grid.width(),
                        progressHeight);
    const QRect whole = form->rect().adjusted(gap, gap, -gap, -gap);
    for (Panel* panel : std::initializer_list<Panel*>{m_ff, m_fExport, m_laid})
        if (panel != nullptr) panel->placeWithin(grid.adjusted(gap, gap, -gap, -gap), whole);
}

void frmGrl::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    Form_Resize();
}

// Also from the buttons beside the panel, which covers them where the letters are large.
void frmGrl::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_fExport->isVisible())
        run({.name = "Cancel"}, &frmGrl::cmdCancel_Click);
    else if (event->key() == Qt::Key_Escape && m_laid != nullptr)
        QCoreApplication::sendEvent(m_laid, event); // also from a pane or a bar
    else
        QMainWindow::keyPressEvent(event);
}

void frmGrl::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (m_column != nullptr && m_fExport != nullptr && event->type() == QEvent::FontChange) arrange();
}

void frmGrl::closeEvent(QCloseEvent* event) {
    event->ignore(); // only the exit command ends the program
    Form_Unload();
}

bool frmGrl::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseMove) Form_MouseMove();
    // A bar or a pane beside the form was opened or closed.
    if (event->type() == QEvent::Resize && watched == centralWidget() && !m_parts.empty()) arrange();
    return QMainWindow::eventFilter(watched, event);
}

void frmGrl::run(const Action& action, Handler command) {
    act(action, [this, command] { (this->*command)(); });
}

void frmGrl::showBook() {
    setWindowTitle(fromUtf8(m_book.Caption).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")));
    for (std::size_t k = 0; k < m_mnuX.size(); ++k) {
        if (m_book.mnuX[k].empty()) continue;
        QString shown = fontMetrics().elidedText(fromUtf8(m_book.mnuX[k]), Qt::ElideMiddle,
                                                 screen()->availableSize().width() * 3 / 4);
        m_mnuX[k]->setText(shown.replace(u'&', QStringLiteral("&&")));
        m_mnuX[k]->setVisible(true);
    }
    holdShortcuts();
    m_grid->flush();
}

void frmGrl::showStatus() {
    // A field only grows: a label that changed its size with every text would lay out the whole window on
    // every key.
    const auto show = [](QLabel* field, const QString& text) {
        if (field->text() == text) return;
        const int width = field->fontMetrics().horizontalAdvance(text) + 2 * groupGap;
        if (width > field->minimumWidth()) field->setFixedSize(width, field->fontMetrics().height() + gap);
        field->setText(text);
    };
    const sheet::Grid& grid = m_book.MSFG;
    show(m_lblSide, text("Side %1").arg(QLatin1Char(m_book.CurrentSide)));
    const auto shown = [](float value) {
        return value == 0 ? QStringLiteral("\u2013") : fromUtf8(sheet::levelText(double(value)));
    };
    const QString height = shown(m_book.CurrentHI);
    const QString reading = shown(m_book.LastReading);
    show(m_lblHI, text("H.I. %1").arg(height));
    // Behind the back sight of row 1 it is the height of instrument that stands there.
    show(m_lblReading, text("Reading %1").arg(reading == height ? QStringLiteral("\u2013") : reading));
    show(m_lblRow, text("Row %1 of %2").arg(grid.Row()).arg(grid.Rows() - 1));
    // What the transfer did not accept about a row is said when the cursor comes to it.
    if (std::exchange(m_statusRow, grid.Row()) != grid.Row()) exchange::tellMarkedRow(grid, m_desktop);
}

void frmGrl::MouseMove(CommandButton& button, bool bold) {
    if (!isActiveWindow()) return;
    button.setFocus(Qt::MouseFocusReason);
    if (bold) button.setCaptionBold(true);
}

void frmGrl::Form_MouseMove() {
    for (const auto& [name, button] : m_buttons)
        button->setCaptionBold(false);
}

void frmGrl::MSFG_MouseMove() {
    if (isActiveWindow() && !m_grid->hasFocus()) m_grid->setFocus(Qt::MouseFocusReason);
}

void frmGrl::typeIntoGrid(char32_t character) {
    if (m_grid->isHidden() || !m_grid->isEnabled()) return;
    m_grid->setFocus();
    MSFG_KeyPress(character);
}

void frmGrl::typeOnButton(char32_t character) {
    const bool figure = (character >= U'0' && character <= U'9') || character == U'.' || character == U'-';
    if (figure)
        act({.name = "Typing", .heldByFrames = true, .kind = Action::Key}, [&] { typeIntoGrid(character); });
}

void frmGrl::enableForEntry(bool enable) {
    m_grid->setEnabled(enable);
    if (enable) m_desktop.focusGrid();
}

void frmGrl::endProgram() {
    m_ended = true;
    m_memory.keep();
    hide();
    m_desktop.endProgram();
}

} // namespace shell
