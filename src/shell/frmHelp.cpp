#include "frmHelp.h"

#include "basic/files.h"
#include "controls/branding.h"
#include "controls/characters.h"
#include "controls/makers.h"
#include "controls/metrics.h"
#include "controls/rtf_reader.h"
#include "text.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScreen>
#include <QTextBrowser>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <chrono>

namespace shell {

using namespace std::chrono_literals;

namespace {

constexpr const char* helpFile = "ZavroGrl.rtf";
constexpr int firstSize = 8;
constexpr char32_t controlG = 7;

} // namespace

frmHelp::frmHelp(desktop::Desktop& desktop, QWidget* parent) : QDialog(parent), m_desktop(desktop) {
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(text("Help"));

    auto* body = new QVBoxLayout(this);
    body->setContentsMargins(windowMargin, windowMargin, windowMargin, windowMargin);
    body->setSpacing(windowGap);
    m_RTB = new QTextBrowser(this);
    m_RTB->setObjectName(QStringLiteral("RTB"));
    m_RTB->setAccessibleName(text("Help text"));
    m_RTB->setOpenLinks(false);
    connect(m_RTB, &QTextBrowser::anchorClicked, this, [this](const QUrl& target) {
        if (target.isRelative() && target.hasFragment()) m_RTB->scrollToAnchor(target.fragment());
    });
    body->addWidget(m_RTB, 1);

    m_cmdOK = makeButton("cmdOK", "OK", this);
    m_cmdOK->setDefault(true);
    m_cmdOK->installEventFilter(this);
    connect(m_cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    QHBoxLayout* row = branding::makeButtonRow({m_cmdOK});
    row->insertWidget(0, new branding::Drawing(this, branding::drawingSide / 2));
    body->addLayout(row);

    m_lbl = new QLabel(text("ZavroGrl\nHold the staff upright"), this);
    m_lbl->setObjectName(QStringLiteral("lbl"));
    m_lbl->setAlignment(Qt::AlignCenter);
    m_lbl->hide();

    const QSize room = screen()->availableSize();
    resize(std::min(820, room.width() * 9 / 10), std::min(760, room.height() * 9 / 10));
    connect(&m_Timer1, &QTimer::timeout, this, [this] { Timer1_Timer(); });
    m_Timer1.start(60ms);
    Form_Load();
}

void frmHelp::Form_Load() {
    m_cmdOK->setFocus();
    const std::string path = desktop::programFile(m_desktop, helpFile);
    if (basic::fileExists(path)) {
        loadRtf(path, *m_RTB->document(), palette());
        m_RTB->moveCursor(QTextCursor::Start);
    } else {
        m_desktop.messageBox("Sorry, Help File not available ...");
    }
}

bool frmHelp::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_cmdOK && event->type() == QEvent::KeyPress) {
        auto& key = static_cast<QKeyEvent&>(*event);
        cmdOK_KeyPress(characterOf(key));
        // The button has the focus, and the text is what one reads.
        constexpr std::array reading{Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Up,
                                     Qt::Key_Down,   Qt::Key_Home,     Qt::Key_End};
        if (std::ranges::find(reading, key.key()) != reading.end())
            return QApplication::sendEvent(m_RTB, event);
    }
    return QDialog::eventFilter(watched, event);
}

void frmHelp::cmdOK_KeyPress(char32_t character) {
    if (character != controlG) return;
    const bool again = m_credits.animating;
    shrinkHelp();
    if (!again) m_credits.top = (height() / 2) * 15;
    growCredits();
    m_credits.animating = true;
    m_credits.colour = {255, 255, 255};
    placeCredits();
}

void frmHelp::shrinkHelp() {
    m_lbl->show();
    m_lbl->lower(); // the button stays in front
    m_RTB->clear();
    if (m_RTB->isHidden()) return;
    keepRoomWhenHidden(*m_RTB);
    // Every fourth step is painted: the box is gone in well under a second.
    for (QRect box = m_RTB->geometry(); box.height() > 0; box.setTop(box.top() + 1)) {
        m_RTB->setGeometry(box);
        if (box.height() % 4 == 0) repaint();
    }
    m_RTB->hide();
}

void frmHelp::growCredits() {
    for (m_credits.size = firstSize; m_credits.size < Credits::largest; ++m_credits.size) {
        placeCredits();
        m_lbl->repaint();
    }
}

void frmHelp::placeCredits() {
    QFont font = m_lbl->font();
    font.setPointSize(m_credits.size);
    m_lbl->setFont(font);
    m_lbl->adjustSize();
    m_lbl->move((width() - m_lbl->width()) / 2, pixels(m_credits.top));
    const auto& [red, green, blue] = m_credits.colour;
    QPalette colours = m_lbl->palette();
    colours.setColor(QPalette::WindowText,
                     QColor(std::min(red, 255), std::min(green, 255), std::min(blue, 255)));
    m_lbl->setPalette(colours);
}

void frmHelp::Timer1_Timer() {
    if (!m_credits.animating) return;
    m_credits.tick(height() * 15, m_lbl->height() * 15,
                   [] { return QRandomGenerator::global()->generateDouble(); });
    placeCredits();
}

void frmHelp::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (m_credits.animating) placeCredits();
}

} // namespace shell
