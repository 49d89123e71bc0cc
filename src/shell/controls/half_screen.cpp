#include "half_screen.h"

#include "metrics.h"

#include <QScreen>
#include <QWidget>

namespace shell {

bool HalfScreenRule::leavesAlone(const QWidget& window) {
    return window.width() < pixels(2500) || window.height() < pixels(700);
}

void HalfScreenRule::apply(QWidget& window) {
    const QSize half = window.screen()->geometry().size() / 2;
    QSize wanted = window.size();
    if (wanted.width() < half.width())
        wanted.setWidth(half.width());
    else if (wanted.height() < half.height())
        wanted.setHeight(half.height());
    if (wanted == window.size() || window.isMaximized() || window.isFullScreen()) {
        m_mendedFrom = {};
    } else if (m_mendedFrom != window.size()) {
        // Asked once: a window manager that wants this size keeps it.
        m_mendedFrom = window.size();
        window.resize(wanted);
    }
}

} // namespace shell
