#include "frmGrl.h"

#include "controls/command_button.h"
#include "controls/flex_grid.h"
#include "export_panel.h"
#include "frmAbout.h"
#include "frmCP.h"
#include "frmDorvan.h"
#include "frmHelp.h"
#include "frmPwd.h"
#include "import_wait.h"
#include "settings_frame.h"

#include "entry/entry_settings.h"
#include "entry/row_editing.h"
#include "exchange/csv_export.h"
#include "exchange/formation_levels.h"
#include "exchange/sheet_import.h"
#include "exchange/transfer.h"
#include "project/append.h"
#include "project/project_commands.h"
#include "project/recent_files.h"
#include "project/save.h"
#include "sheet/arithmetic_check.h"
#include "sheet/change_points.h"
#include "sheet/reduction.h"

namespace shell {

void frmGrl::Form_Unload() {
    run({.name = "Exit"}, &frmGrl::cmdExit_Click);
}

void frmGrl::cmdNew_Click() {
    project::newProject(m_book, m_desktop);
}
void frmGrl::cmdOpen_Click() {
    project::openProject(m_book, m_desktop);
}
void frmGrl::cmdSave_Click() {
    project::saveProject(m_book, m_desktop);
}
void frmGrl::cmdCal_Click() {
    if (!sheet::reduceLevels(m_book, m_desktop).stopped())
        m_desktop.status(sheet::describe(sheet::checkArithmetic(m_book.MSFG)));
}
void frmGrl::cmdCP_Click() {
    frmCP list(sheet::listChangePoints(m_book, m_desktop), m_book, m_desktop, *this);
    showBook();
    list.exec();
}
void frmGrl::cmdExit_Click() {
    if (!project::exitProgram(m_book, m_desktop)) return;
    m_recovery.discard();
    endProgram();
}

void frmGrl::cmdIns_Click() {
    entry::insertRow(m_book, m_desktop);
}
void frmGrl::cmdInss_Click() {
    entry::insertRows(m_book, m_desktop);
}
void frmGrl::cmdDel_Click() {
    entry::deleteRow(m_book, m_desktop);
}
void frmGrl::cmdDels_Click() {
    entry::deleteRows(m_book, m_desktop);
}

void frmGrl::cmdS_Click() {
    typeIntoGrid(U'*');
}
void frmGrl::cmdL_Click() {
    typeIntoGrid(U'L');
}
void frmGrl::cmdR_Click() {
    typeIntoGrid(U'R');
}
void frmGrl::cmdP_Click() {
    typeIntoGrid(U'p');
}

void frmGrl::cmdImpExl_Click() {
    exchange::importSheet(m_book, m_desktop, [this] {
        ImportWait wait(*this);
        return m_desktop.spreadsheet().readSheet([&wait](std::size_t rows) { return wait.goOn(rows); });
    });
}
void frmGrl::cmdExpTxt_Click() {
    exchange::exportCsv(m_book, m_desktop);
}
void frmGrl::cmdExport_Click() {
    exchange::showExportFrame(m_book, m_desktop, m_exportFrame);
    showExportFrame();
}

void frmGrl::cmdTr_Click() {
    exchange::transfer(m_book, m_desktop, m_exportFrame);
    showExportFrame();
}

void frmGrl::cmdTr_KeyPress(char32_t character) {
    if (character != 10) return;
    act({.name = "Formation levels", .walksGrid = true},
        [this] { exchange::updateFormationLevels(m_book.MSFG, m_desktop, m_exportFrame); });
}

void frmGrl::cmdCancel_Click() {
    exchange::cancelExport(m_desktop, m_exportFrame);
    showExportFrame();
}

void frmGrl::cmdExpTxt_KeyPress(char32_t character) {
    if (character == 10) button("cmdImpExl").show();
}

void frmGrl::cmdList_Click() {
    m_grid->setEnabled(false);
    m_ff->open();
}

void frmGrl::cmdOK_Click() {
    try {
        entry::acceptSettings(m_book, m_desktop);
    } catch (const basic::RuntimeError& error) {
        // Too many offsets: the frame stays, so that some can be deleted. Only the file fails later than
        // that.
        if (error.number() != basic::SubscriptOutOfRange) m_ff->hide();
        enableForEntry(m_ff->isHidden());
        m_desktop.messageBox(error.shown());
        if (!error.path().empty()) m_desktop.status("The settings hold for this run only: " + error.told());
        return;
    }
    m_ff->hide();
    enableForEntry(true);
}

void frmGrl::mnuNew_Click() {
    cmdNew_Click();
}
void frmGrl::mnuOpen_Click() {
    cmdOpen_Click();
}
void frmGrl::mnuSaveas_Click() {
    project::saveProjectAs(m_book, m_desktop);
}
void frmGrl::mnuSave_Click() {
    cmdSave_Click();
}
void frmGrl::mnuAppend_Click() {
    project::appendProject(m_book, m_desktop);
}
void frmGrl::mnuX1_Click() {
    project::openRecent(m_book, m_desktop, 1);
}
void frmGrl::mnuX2_Click() {
    project::openRecent(m_book, m_desktop, 2);
}
void frmGrl::mnuX3_Click() {
    project::openRecent(m_book, m_desktop, 3);
}
void frmGrl::mnuX4_Click() {
    project::openRecent(m_book, m_desktop, 4);
}
void frmGrl::mnuExit_Click() {
    cmdExit_Click();
}
void frmGrl::mnuSettings_Click() {
    cmdList_Click();
}
void frmGrl::mnuExport_Click() {
    cmdExport_Click();
}
void frmGrl::mnuExcel_Click() {
    cmdExpTxt_Click();
}
void frmGrl::mnuImport_Click() {
    cmdImpExl_Click();
}
void frmGrl::mnuSetPath_Click() {
    frmDorvan(m_book, m_desktop, this).exec();
}
void frmGrl::mnuPass_Click() {
    frmPwd(m_desktop, this).exec();
}
void frmGrl::MnuHelp1_Click() {
    frmHelp(m_desktop, this).exec();
}
void frmGrl::mnuAbout_Click() {
    frmAbout(this).exec();
}

void frmGrl::mNu() {
    project::mNu(m_book, m_desktop);
}

void frmGrl::Dsb() {
    for (const char* name :
         {"cmdDel", "cmdIns", "cmdList", "cmdNew", "cmdOpen", "cmdSave", "cmdCal", "cmdExit"})
        button(name).setEnabled(false);
}

void frmGrl::Enb() {
    for (const char* name :
         {"cmdDel", "cmdIns", "cmdList", "cmdNew", "cmdOpen", "cmdSave", "cmdCal", "cmdExit"})
        button(name).setEnabled(true);
}

void frmGrl::showExportFrame() {
    if (m_exportFrame.commandsEnabled)
        Enb();
    else
        Dsb();
    const bool closes = !m_fExport->isHidden() && !m_exportFrame.visible;
    m_fExport->showFrame();
    if (closes) m_desktop.focusGrid();
}

} // namespace shell
