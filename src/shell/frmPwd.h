#pragma once

#include "desktop/desktop.h"

#include <QDialog>

#include <string>

class QLabel;
class QLineEdit;
class QPushButton;

namespace shell {

/// Changes the program's password: the old one first, then the new one twice.
class frmPwd final : public QDialog {
  public:
    explicit frmPwd(desktop::Desktop& desktop, QWidget* parent = nullptr);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Form_Load();
    void cmdOK_Click();
    void checkOld();
    void storeNew();
    void tell(const QString& what);

    desktop::Desktop& m_desktop;
    QLabel* m_lblOld;
    QLabel* m_lblNew;
    QLabel* m_lblREnt;
    QLabel* m_lblStore;
    QLineEdit* m_txtOld;
    QLineEdit* m_txtNew;
    QLineEdit* m_txtREnt;
    QPushButton* m_cmdOK;
    QPushButton* m_cmdCancel;
    std::string m_stored;
};

} // namespace shell
