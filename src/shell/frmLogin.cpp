#include "frmLogin.h"

#include "basic/strings.h"
#include "controls/branding.h"
#include "controls/makers.h"
#include "project/password_store.h"
#include "text.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace shell {

frmLogin::frmLogin(desktop::Desktop& desktop, std::function<void()> next, std::function<void()> end,
                   QWidget* parent)
    : QDialog(parent), m_desktop(desktop), m_next(std::move(next)), m_end(std::move(end)) {
    setObjectName(QStringLiteral("frmLogin"));
    setWindowTitle(text("Login"));

    QVBoxLayout* body = branding::layOut(*this);
    body->addWidget(branding::makeTitle(QStringLiteral("ZavroGrl"), this));

    m_txtUserName = makeLine("txtUserName", "User Name", this);
    m_txtPassword = makePasswordLine("txtPassword", "Password", this);
    auto* form = new QFormLayout;
    form->addRow(text("&User Name:"), m_txtUserName);
    form->addRow(text("&Password:"), m_txtPassword);
    body->addLayout(form);

    m_lblStore = branding::makeText({}, this, QStringLiteral("lblStore"));
    m_lblStore->hide();
    body->addWidget(m_lblStore);

    m_cmdOK = makeButton("cmdOK", "OK", this);
    m_cmdOK->setDefault(true);
    m_cmdCancel = makeButton("cmdCancel", "Cancel", this);
    body->addStretch(1);
    body->addLayout(branding::makeButtonRow({m_cmdOK, m_cmdCancel}));
    setMinimumWidth(400);

    connect(m_cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(m_cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    m_txtPassword->setFocus();
    Form_Load();
    branding::centre(*this);
}

void frmLogin::Form_Load() {
    try {
        m_stored = project::passwordForLogin(m_desktop);
    } catch (const basic::RuntimeError& error) {
        // It is there, so a password may be in it: nobody is let in who might not know it.
        m_lblStore->setText(text(project::unreadableStore(m_desktop, error)));
        m_lblStore->show();
        m_cmdOK->setEnabled(false);
    }
}

void frmLogin::cmdOK_Click() {
    if (!m_cmdOK->isEnabled()) return;
    if (basic::trim(toUtf8(m_txtPassword->text())) == m_stored) {
        if (const auto next = std::exchange(m_next, nullptr)) next();
        return;
    }
    m_desktop.messageBox("Invalid Password, try again!", desktop::Buttons::Ok, "Login");
    m_txtPassword->setFocus();
    m_txtPassword->home(false);
    m_txtPassword->end(true);
}

void frmLogin::cmdCancel_Click() {
    if (const auto end = std::exchange(m_end, nullptr)) end();
}

void frmLogin::reject() {
    cmdCancel_Click();
}

} // namespace shell
