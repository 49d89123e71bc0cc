#pragma once

#include "credits.h"
#include "desktop/desktop.h"

#include <QDialog>
#include <QTimer>

class QLabel;
class QPushButton;
class QTextBrowser;

namespace shell {

/// The help text from the rich-text file in the program folder, and behind Ctrl+G the credits.
class frmHelp final : public QDialog {
  public:
    explicit frmHelp(desktop::Desktop& desktop, QWidget* parent = nullptr);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void Form_Load();
    void cmdOK_KeyPress(char32_t character);
    void Timer1_Timer();
    void shrinkHelp();
    void growCredits();
    void placeCredits();

    desktop::Desktop& m_desktop;
    QTimer m_Timer1;
    QTextBrowser* m_RTB;
    QPushButton* m_cmdOK;
    QLabel* m_lbl;
    Credits m_credits;
};

} // namespace shell
