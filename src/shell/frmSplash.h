#pragma once

#include <QTimer>
#include <QWidget>

#include <functional>

namespace shell {

/// The first window: name and version. Gives way after 1.2 seconds, or at once on Esc or a click.
class frmSplash final : public QWidget {
  public:
    explicit frmSplash(std::function<void()> next, QWidget* parent = nullptr);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void Timer1_Timer();

    QTimer m_Timer1;
    std::function<void()> m_next;
};

} // namespace shell
