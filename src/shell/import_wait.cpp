#include "import_wait.h"

#include "text.h"

#include <QCoreApplication>

namespace shell {
namespace {

constexpr int moment = 400; // milliseconds; most sheets are read in less

} // namespace

ImportWait::ImportWait(QWidget& window, const char* title, const char* waiting)
    : m_window(window), m_title(title), m_waiting(waiting) {
    m_since.start();
}

bool ImportWait::goOn(std::size_t rowsRead) {
    if (m_since.elapsed() < moment) return true;
    if (!m_box) {
        m_box.emplace(&m_window);
        m_box->setObjectName(QStringLiteral("importWait"));
        m_box->setWindowTitle(text(m_title));
        m_box->setCancelButtonText(text("Cancel"));
        m_box->setRange(0, 0);
        m_box->setMinimumWidth(320);
        m_box->setWindowModality(Qt::ApplicationModal);
        m_box->show();
    }
    m_box->setLabelText(rowsRead == 0 ? text(m_waiting) : text("Reading the sheet: %1 rows").arg(rowsRead));
    QCoreApplication::processEvents();
    return !m_box->wasCanceled();
}

} // namespace shell
