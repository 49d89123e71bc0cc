#include "application.h"

namespace shell {

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        if (!unexpected) throw;
        unexpected();
        return true;
    }
}

} // namespace shell
