#include "frmPwd.h"

#include "basic/strings.h"
#include "controls/branding.h"
#include "controls/makers.h"
#include "project/password_store.h"
#include "text.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace shell {

frmPwd::frmPwd(desktop::Desktop& desktop, QWidget* parent) : QDialog(parent), m_desktop(desktop) {
    setObjectName(QStringLiteral("frmPwd"));
    setWindowTitle(text("Password..."));
    QVBoxLayout* body = branding::layOut(*this);
    body->addWidget(branding::makeTitle(QStringLiteral("ZavroGrl"), this));
    auto* form = new QGridLayout;
    form->setColumnStretch(1, 1);

    const auto addBox = [this, form](const char* caption, const char* name, const char* labelName,
                                     QLabel*& label) {
        QLineEdit* box = makePasswordLine(name, caption, this);
        box->installEventFilter(this);
        label = makeLabel(caption, *box);
        label->setObjectName(QLatin1String(labelName));
        const int row = form->rowCount();
        form->addWidget(label, row, 0);
        form->addWidget(box, row, 1);
        // The window keeps its size when the new boxes appear.
        keepRoomWhenHidden(*label);
        keepRoomWhenHidden(*box);
        return box;
    };
    m_txtOld = addBox("Enter old Passward:", "txtOld", "lblOld", m_lblOld);
    m_txtNew = addBox("Enter New Passward:", "txtNew", "lblNew", m_lblNew);
    m_txtREnt = addBox("ReEnter New Passward:", "txtREnt", "lblREnt", m_lblREnt);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_txtNew, m_txtREnt, m_lblNew, m_lblREnt})
        widget->hide();
    body->addLayout(form);

    m_lblStore = branding::makeText({}, this, QStringLiteral("lblStore"));
    m_lblStore->hide();
    body->addWidget(m_lblStore);

    m_cmdOK = makeButton("cmdOK", "OK", this);
    m_cmdCancel = makeButton("cmdCancel", "Cancel", this);
    body->addStretch(1);
    body->addLayout(branding::makeButtonRow({m_cmdOK, m_cmdCancel}));
    setMinimumWidth(440);

    connect(m_cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(m_cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    m_txtOld->setFocus();
    Form_Load();
}

void frmPwd::Form_Load() {
    try {
        m_stored = project::storedPassword(m_desktop);
    } catch (const basic::RuntimeError& error) {
        // It may be another one than nobody's: it is not replaced by who cannot tell it.
        tell(text(project::unreadableStore(m_desktop, error)));
        m_txtOld->setEnabled(false);
        m_cmdOK->setEnabled(false);
    }
}

// Enter goes from box to box; it never presses a button from within a box.
bool frmPwd::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter) return QDialog::eventFilter(watched, event);
    if (watched == m_txtOld)
        checkOld();
    else if (watched == m_txtNew)
        m_txtREnt->setFocus();
    else if (watched == m_txtREnt)
        m_cmdOK->setFocus();
    return true;
}

void frmPwd::cmdOK_Click() {
    if (m_txtNew->isHidden())
        checkOld();
    else
        storeNew();
}

void frmPwd::checkOld() {
    if (!m_cmdOK->isEnabled()) return;
    if (basic::trim(toUtf8(m_txtOld->text())) != m_stored) {
        m_desktop.messageBox("Your Password is wrong...Try again");
        m_txtOld->setFocus();
        return;
    }
    for (QWidget* widget : std::initializer_list<QWidget*>{m_txtNew, m_txtREnt, m_lblNew, m_lblREnt})
        widget->show();
    m_txtNew->setFocus();
}

void frmPwd::storeNew() {
    if (m_txtNew->text() != m_txtREnt->text()) {
        m_desktop.messageBox("Your ReEntered Passward is wrong..., try again");
        return;
    }
    try {
        const std::string typed = toUtf8(m_txtNew->text());
        project::storePassword(m_desktop, basic::trim(typed));
    } catch (const basic::RuntimeError& error) {
        tell(text("The password was not changed: %1").arg(fromUtf8(error.told())));
        return;
    }
    m_desktop.messageBox("Your Passward is successfully changed");
    accept();
}

void frmPwd::tell(const QString& what) {
    m_lblStore->setText(what);
    m_lblStore->show();
    // Below the boxes, not out of their height.
    layout()->activate();
    const int wanted = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width())
                                                     : layout()->totalSizeHint().height();
    if (wanted > height()) resize(width(), wanted);
}

} // namespace shell
