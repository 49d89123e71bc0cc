#include "start_chain.h"

#include "frmLogin.h"
#include "frmSplash.h"
#include "frmStart.h"

#include <utility>

namespace shell {

// A window that gives way is still busy with the click or the timer that ended it.
void StartChain::Later::operator()(QWidget* window) const {
    window->hide();
    window->deleteLater();
}

StartChain::StartChain(desktop::Desktop& desktop, std::function<void()> showMainWindow,
                       std::function<void()> end)
    : m_desktop(desktop), m_showMainWindow(std::move(showMainWindow)), m_end(std::move(end)) {}

void StartChain::showSplash() {
    take(std::make_unique<frmSplash>([this] { showProduct(); }));
}

void StartChain::showProduct() {
    take(std::make_unique<frmStart>([this] { showLogin(); }, m_end));
}

void StartChain::showLogin() {
    take(std::make_unique<frmLogin>(
        m_desktop, [this] { finish(); }, m_end));
}

void StartChain::finish() {
    const auto login = std::exchange(m_current, nullptr);
    m_showMainWindow();
}

void StartChain::take(std::unique_ptr<QWidget> next) {
    next->show();
    next->activateWindow();
    m_current.reset(next.release());
}

} // namespace shell
