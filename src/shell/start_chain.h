#pragma once

#include "desktop/desktop.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace shell {

/// The road to the main window: splash, product screen, login. Each window lives until the next one is shown.
class StartChain {
  public:
    /// `showMainWindow` runs after the right password, `end` when the user gives up on the way.
    StartChain(desktop::Desktop& desktop, std::function<void()> showMainWindow, std::function<void()> end);

    void showSplash();
    [[nodiscard]] QWidget* current() const { return m_current.get(); }

  private:
    void showProduct();
    void showLogin();
    void finish();
    void take(std::unique_ptr<QWidget> next);

    struct Later {
        void operator()(QWidget* window) const;
    };

    desktop::Desktop& m_desktop;
    std::function<void()> m_showMainWindow;
    std::function<void()> m_end;
    std::unique_ptr<QWidget, Later> m_current;
};

} // namespace shell
