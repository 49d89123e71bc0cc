#include "frmSplash.h"

#include "controls/branding.h"
#include "text.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

#include <chrono>
#include <utility>

namespace shell {

using namespace std::chrono_literals;

frmSplash::frmSplash(std::function<void()> next, QWidget* parent) : QWidget(parent), m_next(std::move(next)) {
    setObjectName(QStringLiteral("frmSplash"));
    setAccessibleName(text("ZavroGrl is starting"));
    branding::makeFrameless(*this);

    QVBoxLayout* body = branding::layOut(*this, branding::drawingSide * 3 / 2);
    body->addStretch(1);
    body->addWidget(branding::makeTitle(QStringLiteral("ZavroGrl"), this));
    body->addWidget(branding::makeText(text("Field book for the levelling of roads"), this,
                                       QStringLiteral("lblProduct")));
    body->addWidget(branding::makeText(branding::versionText(), this, QStringLiteral("lblVer")));
    body->addStretch(1);
    setMinimumWidth(420);
    branding::centre(*this);

    m_Timer1.setSingleShot(true);
    connect(&m_Timer1, &QTimer::timeout, this, [this] { Timer1_Timer(); });
    m_Timer1.start(1200ms);
}

void frmSplash::Timer1_Timer() {
    m_Timer1.stop();
    if (const auto next = std::exchange(m_next, nullptr)) next();
}

void frmSplash::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        Timer1_Timer();
    else
        QWidget::keyPressEvent(event);
}

void frmSplash::mousePressEvent(QMouseEvent*) {
    Timer1_Timer();
}

void frmSplash::closeEvent(QCloseEvent* event) {
    event->accept();
    Timer1_Timer();
}

} // namespace shell
