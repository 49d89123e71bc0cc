#pragma once

#include "controls/panel.h"

#include "desktop/desktop.h"
#include "sheet/book.h"

#include <functional>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QRadioButton;

namespace shell {

class CommandButton;

/// The Settings frame `ff`. Its controls and book.settings always say the same: a change in a box is in the
/// settings at once, and showSettings() brings settings that were read from the file into the boxes.
class SettingsFrame final : public Panel {
  public:
    SettingsFrame(sheet::Book& book, desktop::Desktop& desktop, QWidget* parent);

    std::function<void()> cmdOK_Click;
    std::function<void()> givenUp; ///< by Esc: the settings are as they were when the frame was opened

    void open();
    void showSettings();
    void chkOft_Click(); ///< the controls of the fixed offsets are there while chkOft is ticked
    void chkAdd_Click(); ///< txtAdd is there while chkAdd is ticked

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void cmdAdd_Click();
    void lstOft_KeyDown(int key);
    void showList();
    QCheckBox* makeCheck(const char* name, const char* caption, bool sheet::Settings::*setting);
    QRadioButton* makeOption(const char* name, const char* caption);

    sheet::Settings& m_settings;
    sheet::Settings m_before; ///< as the frame was opened
    desktop::Desktop& m_desktop;
    bool m_showing = false;
    QComboBox* m_cboIncr;
    QComboBox* m_cboSide;
    QCheckBox* m_chkAuto;
    QCheckBox* m_chkFinal;
    QCheckBox* m_chk005;
    QCheckBox* m_chkAdd;
    QLineEdit* m_txtAdd;
    QCheckBox* m_chkOft;
    QLineEdit* m_txtOft;
    QRadioButton* m_optLeft;
    QRadioButton* m_optRight;
    QRadioButton* m_optBoth;
    CommandButton* m_cmdAdd;
    QListWidget* m_lstOft;
};

} // namespace shell
