#pragma once

#include "desktop/desktop.h"

#include <QDialog>

#include <functional>
#include <string>

class QLabel;
class QLineEdit;
class QPushButton;

namespace shell {

/// Asks for the program's password. The user name is shown and never read.
class frmLogin final : public QDialog {
  public:
    /// `next` runs after the right password, `end` when the user gives up.
    frmLogin(desktop::Desktop& desktop, std::function<void()> next, std::function<void()> end,
             QWidget* parent = nullptr);

    void reject() override; ///< Esc and the frame's button do what Cancel does

  private:
    void Form_Load();
    void cmdOK_Click();
    void cmdCancel_Click();

    desktop::Desktop& m_desktop;
    QLineEdit* m_txtUserName;
    QLineEdit* m_txtPassword;
    QPushButton* m_cmdOK;
    QPushButton* m_cmdCancel;
    QLabel* m_lblStore;
    std::string m_stored;
    std::function<void()> m_next;
    std::function<void()> m_end;
};

} // namespace shell
