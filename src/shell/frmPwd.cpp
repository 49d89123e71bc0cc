#include "frmPwd.h"

#include "basic/strings.h"
#include "controls/branding.h"
#include "controls/panel.h"
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

    const auto addBox = [this, form](const char* caption, const char* name, QLabel*& label) {
        auto* box = new QLineEdit(this);
        box->setObjectName(QLatin1String("txt") + QLatin1String(name));
        box->setEchoMode(QLineEdit::Password);
        box->installEventFilter(this);
        label = new QLabel(text(caption), this);
        label->setObjectName(QLatin1String("lbl") + QLatin1String(name));
        label->setBuddy(box);
        box->setAccessibleName(label->text());
        const int row = form->rowCount();
        form->addWidget(label, row, 0);
        form->addWidget(box, row, 1);
        // The window keeps its size when the new boxes appear.
        keepRoomWhenHidden(*label);
        keepRoomWhenHidden(*box);
        return box;
    };
    txtOld = addBox("Enter old Passward:", "Old", lblOld);
    txtNew = addBox("Enter New Passward:", "New", lblNew);
    txtREnt = addBox("ReEnter New Passward:", "REnt", lblREnt);
    for (QWidget* widget : std::initializer_list<QWidget*>{txtNew, txtREnt, lblNew, lblREnt})
        widget->hide();
    body->addLayout(form);

    lblStore = branding::makeText({}, this, QStringLiteral("lblStore"));
    lblStore->hide();
    body->addWidget(lblStore);

    cmdOK = new QPushButton(text("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdCancel = new QPushButton(text("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    body->addStretch(1);
    body->addLayout(branding::makeButtonRow({cmdOK, cmdCancel}));
    setMinimumWidth(440);

    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    txtOld->setFocus();
    Form_Load();
}

void frmPwd::Form_Load() {
    try {
        m_stored = project::storedPassword(m_desktop);
    } catch (const basic::RuntimeError& error) {
        tell(text("The stored password cannot be read: %1").arg(fromUtf8(error.told())));
    }
}

// Enter goes from box to box; it never presses a button from within a box.
bool frmPwd::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter) return QDialog::eventFilter(watched, event);
    if (watched == txtOld)
        checkOld();
    else if (watched == txtNew)
        txtREnt->setFocus();
    else if (watched == txtREnt)
        cmdOK->setFocus();
    return true;
}

void frmPwd::cmdOK_Click() {
    if (txtNew->isHidden())
        checkOld();
    else
        storeNew();
}

void frmPwd::checkOld() {
    if (basic::trim(toUtf8(txtOld->text())) != m_stored) {
        m_desktop.messageBox("Your Password is wrong...Try again");
        txtOld->setFocus();
        return;
    }
    for (QWidget* widget : std::initializer_list<QWidget*>{txtNew, txtREnt, lblNew, lblREnt})
        widget->show();
    txtNew->setFocus();
}

void frmPwd::storeNew() {
    if (txtNew->text() != txtREnt->text()) {
        m_desktop.messageBox("Your ReEntered Passward is wrong..., try again");
        return;
    }
    try {
        const std::string typed = toUtf8(txtNew->text());
        project::storePassword(m_desktop, basic::trim(typed));
    } catch (const basic::RuntimeError& error) {
        tell(text("The password was not changed: %1").arg(fromUtf8(error.told())));
        return;
    }
    m_desktop.messageBox("Your Passward is successfully changed");
    accept();
}

void frmPwd::tell(const QString& what) {
    lblStore->setText(what);
    lblStore->show();
    // Below the boxes, not out of their height.
    layout()->activate();
    const int wanted = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width())
                                                     : layout()->totalSizeHint().height();
    if (wanted > height()) resize(width(), wanted);
}

} // namespace shell
