#include "frmLogin.h"

#include "basic/files.h"
#include "basic/strings.h"
#include "controls/branding.h"
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

    txtUserName = new QLineEdit(this);
    txtUserName->setObjectName(QStringLiteral("txtUserName"));
    txtUserName->setAccessibleName(text("User Name"));
    txtPassword = new QLineEdit(this);
    txtPassword->setObjectName(QStringLiteral("txtPassword"));
    txtPassword->setAccessibleName(text("Password"));
    txtPassword->setEchoMode(QLineEdit::Password);
    auto* form = new QFormLayout;
    form->addRow(text("&User Name:"), txtUserName);
    form->addRow(text("&Password:"), txtPassword);
    body->addLayout(form);

    lblStore = branding::makeText({}, this, QStringLiteral("lblStore"));
    lblStore->hide();
    body->addWidget(lblStore);

    cmdOK = new QPushButton(text("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(text("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    body->addStretch(1);
    body->addLayout(branding::makeButtonRow({cmdOK, cmdCancel}));
    setMinimumWidth(400);

    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    txtPassword->setFocus();
    Form_Load();
    branding::centre(*this);
}

void frmLogin::Form_Load() {
    try {
        m_stored = project::passwordForLogin(m_desktop);
    } catch (const basic::RuntimeError& error) {
        // It is there, so a password may be in it: nobody is let in who might not know it.
        const char* store =
            basic::fileExists(desktop::programFile(m_desktop, "suprt.dll")) ? "suprt.dll" : "lgn.lgn";
        lblStore->setText(
            text("The stored password cannot be read: %1 (%2). Put a readable copy of the file back, or move "
                 "it "
                 "away to begin without a password.")
                .arg(fromUtf8(error.description()), fromUtf8(desktop::programFile(m_desktop, store))));
        lblStore->show();
        cmdOK->setEnabled(false);
    }
}

void frmLogin::cmdOK_Click() {
    if (!cmdOK->isEnabled()) return;
    if (basic::trim(toUtf8(txtPassword->text())) == m_stored) {
        if (const auto next = std::exchange(m_next, nullptr)) next();
        return;
    }
    m_desktop.messageBox("Invalid Password, try again!", desktop::Buttons::Ok, "Login");
    txtPassword->setFocus();
    txtPassword->home(false);
    txtPassword->end(true);
}

void frmLogin::cmdCancel_Click() {
    if (const auto end = std::exchange(m_end, nullptr)) end();
}

void frmLogin::reject() {
    cmdCancel_Click();
}

} // namespace shell
