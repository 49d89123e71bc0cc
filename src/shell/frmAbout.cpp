#include "frmAbout.h"

#include "controls/branding.h"
#include "controls/makers.h"
#include "qt_desktop.h"
#include "text.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace shell {

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    const QString title = QString::fromLatin1(applicationTitle);
    setWindowTitle(text("About ") + title);

    QVBoxLayout* body = branding::layOut(*this);
    if (auto* picIcon = findChild<branding::Drawing*>()) picIcon->setObjectName(QStringLiteral("picIcon"));
    QLabel* lblTitle = branding::makeTitle(title, this);
    lblTitle->setObjectName(QStringLiteral("lblTitle"));
    body->addWidget(lblTitle);
    body->addWidget(branding::makeText(branding::versionText(), this, QStringLiteral("lblVersion")));
    body->addWidget(branding::makeText(
        text("A field book for the levelling of roads: readings in, reduced levels, change "
             "points and road data out."),
        this, QStringLiteral("lblDescription")));
    body->addWidget(branding::makeText(
        text("Free software under the MIT licence, without any warranty. Check the levels that "
             "you build on."),
        this, QStringLiteral("lblDisclaimer")));

    QPushButton* cmdSysInfo = makeButton("cmdSysInfo", "&System Info...", this);
    cmdSysInfo->setAutoDefault(false);
    QPushButton* cmdOK = makeButton("cmdOK", "OK", this);
    cmdOK->setDefault(true);
    body->addStretch(1);
    body->addLayout(branding::makeButtonRow({cmdSysInfo, cmdOK}));
    setMinimumWidth(460);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    cmdOK->setFocus();
}

} // namespace shell
