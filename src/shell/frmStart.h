#pragma once

#include "moving_label.h"

#include <QTimer>
#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;

namespace shell {

/// The product screen: a notice, a label that moves to and fro, and after a moment the button that goes on.
class frmStart final : public QWidget {
  public:
    frmStart(std::function<void()> next, std::function<void()> end, QWidget* parent = nullptr);

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void Timer1_Timer();
    void tim_Timer();
    void cmdOK_Click();

    QTimer m_Timer1;
    QTimer m_tim;
    QLabel* m_lbl2;
    QLabel* m_lblGo;
    QPushButton* m_cmdOK;
    MovingLabel m_moving;
    std::function<void()> m_next;
    std::function<void()> m_end;
};

} // namespace shell
