#include "frmGrl.h"

#include "button_column.h"
#include "controls/elided_label.h"
#include "controls/flex_grid.h"
#include "controls/metrics.h"
#include "export_panel.h"
#include "settings_frame.h"
#include "text.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QStatusBar>

// The status bar and the frames laid over the grid.

namespace shell {

void frmGrl::buildStatusBar() {
    // Their names are what they show, so that a screen reader tells it.
    const auto field = [this](const char* name, const char* meaning) {
        auto* label = new QLabel;
        label->setObjectName(QLatin1String(name));
        label->setAccessibleDescription(text(meaning));
        label->setContentsMargins(labelPadding, 0, labelPadding, 0);
        statusBar()->addWidget(label);
        auto* line = new QFrame;
        line->setFrameStyle(int(QFrame::VLine) | int(QFrame::Plain));
        line->setForegroundRole(QPalette::Mid);
        statusBar()->addWidget(line);
        return label;
    };
    statusBar()->setSizeGripEnabled(false);
    m_lblSide = field("lblSide", "Side");
    m_lblHI = field("lblHI", "Height of instrument");
    m_lblReading = field("lblReading", "Last reading");
    m_lblRow = field("lblRow", "Row");
    auto* message = new ElidedLabel(Qt::ElideRight);
    message->setObjectName(QStringLiteral("lblStatus"));
    message->setAccessibleDescription(text("Message"));
    message->setTextFormat(Qt::PlainText);
    statusBar()->addWidget(message, 1);
    m_desktop.attach(*m_pbr1, *message, *m_grid);
}

void frmGrl::buildFrames() {
    m_ff = new SettingsFrame(m_book, m_desktop, centralWidget());
    m_ff->cmdOK_Click = [this] { run({.name = "Settings"}, &frmGrl::cmdOK_Click); };
    m_ff->givenUp = [this] { act({.name = "Settings"}, [this] { enableForEntry(true); }); };
    m_fExport = new ExportPanel(m_exportFrame, m_desktop, centralWidget());
    m_fExport->cmdTr_Click = [this] { run({.name = "Transfer", .walksGrid = true}, &frmGrl::cmdTr_Click); };
    m_fExport->cmdTr_KeyPress = [this](char32_t character) { cmdTr_KeyPress(character); };
    m_fExport->cmdCancel_Click = [this] { run({.name = "Cancel"}, &frmGrl::cmdCancel_Click); };
}

void frmGrl::layOver(Panel* panel) {
    if (m_laid != nullptr) m_laid->hide();
    m_laid = panel;
    m_column->setEnabled(panel == nullptr);
    for (const char* frame : {"mnuSettings", "mnuExport"})
        menu("mnuTools").findChild<QAction*>(QLatin1String(frame))->setEnabled(panel == nullptr);
    enableForEntry(panel == nullptr);
    if (panel == nullptr) return;
    arrange();
    panel->show();
    panel->raise();
}

} // namespace shell
