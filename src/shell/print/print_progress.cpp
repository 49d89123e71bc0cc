#include "print_progress.h"

#include "../text.h"

#include <QApplication>

namespace shell {

PrintProgress::PrintProgress(int pages, QWidget* parent, std::chrono::milliseconds until)
    : m_dialog(text("Pages"), text("Cancel"), 0, pages, parent), m_until(until) {
    m_dialog.setObjectName(QStringLiteral("printProgress"));
    m_dialog.setWindowModality(Qt::WindowModal);
    m_dialog.setMinimumDuration(1 << 30); // shown below, since this one guesses
    m_dialog.setAutoReset(false);
    m_clock.start();
}

bool PrintProgress::goOn(int done) {
    if (m_clock.elapsed() < m_until.count()) return true;
    if (m_dialog.isHidden()) m_dialog.show();
    m_dialog.setValue(done);
    QApplication::processEvents();
    return !m_dialog.wasCanceled();
}

} // namespace shell
