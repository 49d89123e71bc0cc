#include "frmStart.h"

#include "controls/branding.h"
#include "controls/makers.h"
#include "controls/metrics.h"
#include "text.h"

#include <QCloseEvent>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <chrono>
#include <utility>

namespace shell {

using namespace std::chrono_literals;

namespace {

constexpr int bandWidth = 420; // holds the label at its rightmost place

} // namespace

frmStart::frmStart(std::function<void()> next, std::function<void()> end, QWidget* parent)
    : QWidget(parent), m_next(std::move(next)), m_end(std::move(end)) {
    setObjectName(QStringLiteral("frmStart"));
    setAccessibleName(text("About this program"));
    branding::makeFrameless(*this);

    QVBoxLayout* body = branding::layOut(*this);
    body->addWidget(branding::makeTitle(QStringLiteral("ZavroGrl"), this));
    body->addWidget(branding::makeText(
        text("The levelling book of a road survey, keyed as it stands in the paper book: readings reduced by "
             "the "
             "height of instrument, checked, kept, and handed on to the road-design program ZavroRoad."),
        this, QStringLiteral("lblNotice")));

    auto* band = new QFrame(this);
    band->setMinimumWidth(bandWidth);
    m_lbl2 = new QLabel(text("From bench mark to bench mark"), band);
    m_lbl2->setObjectName(QStringLiteral("lbl2"));
    m_lbl2->adjustSize();
    band->setFixedHeight(m_lbl2->height() + windowGap);
    body->addWidget(band);

    m_lblGo = branding::makeText(text("Press OK to log in."), this, QStringLiteral("lblGo"));
    m_cmdOK = makeButton("cmdOK", "OK", this);
    m_cmdOK->setAccessibleName(text("OK, go on to the login"));
    m_cmdOK->setAutoDefault(true);
    for (QWidget* widget : {static_cast<QWidget*>(m_lblGo), static_cast<QWidget*>(m_cmdOK)}) {
        keepRoomWhenHidden(*widget);
        widget->hide();
    }
    QHBoxLayout* row = branding::makeButtonRow({m_cmdOK});
    row->insertWidget(0, m_lblGo, 1);
    body->addStretch(1);
    body->addLayout(row);
    branding::centre(*this);

    connect(m_cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(&m_Timer1, &QTimer::timeout, this, [this] { Timer1_Timer(); });
    connect(&m_tim, &QTimer::timeout, this, [this] { tim_Timer(); });
    m_lbl2->move(pixels(m_moving.left), windowGap / 2);
    m_Timer1.start(50ms);
    m_tim.setSingleShot(true);
    m_tim.start(800ms);
}

void frmStart::Timer1_Timer() {
    m_moving.tick();
    m_lbl2->move(pixels(m_moving.left), m_lbl2->y());
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    const auto [red, green, blue] = randomColour(static_cast<std::uint64_t>(now));
    QPalette palette = m_lbl2->palette();
    palette.setColor(QPalette::WindowText, QColor(red, green, blue));
    m_lbl2->setPalette(palette);
}

void frmStart::tim_Timer() {
    m_lblGo->show();
    m_cmdOK->show();
    m_cmdOK->setFocus();
}

void frmStart::cmdOK_Click() {
    m_Timer1.stop();
    if (const auto next = std::exchange(m_next, nullptr)) next();
}

void frmStart::closeEvent(QCloseEvent* event) {
    event->accept();
    if (m_next && m_end) m_end();
}

} // namespace shell
