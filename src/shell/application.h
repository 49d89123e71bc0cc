#pragma once

#include <QApplication>

#include <functional>

namespace shell {

/// The application with a net below the window's own: what escapes an event handler of any window, a dialog's
/// too, does not end the program.
class Application final : public QApplication {
  public:
    using QApplication::QApplication;

    /// Called from within the handler of what was thrown; must not throw.
    std::function<void()> unexpected;

    bool notify(QObject* receiver, QEvent* event) override;
};

} // namespace shell
