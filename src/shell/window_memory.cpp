#include "window_memory.h"

#include "text.h"

#include "sheet/grid.h"

#include <QDir>
#include <QDockWidget>
#include <QEvent>
#include <QFileInfo>
#include <QSettings>
#include <QToolBar>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace shell {
namespace {

constexpr std::array letterSizes{8.25, 9.75, 12.0};
constexpr int layoutVersion = 1; // of the panes and bars; another one's places are not taken

constexpr std::chrono::seconds restsFor{1};

QString stateFolder() {
    QString home = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(home)) home = QDir::homePath() + QStringLiteral("/.local/state");
    return home + QStringLiteral("/zavrogrl");
}

} // namespace

WindowMemory::WindowMemory(QMainWindow& window, sheet::Grid& grid, const std::string& folder)
    : m_window(window),
      m_grid(grid),
      m_file((folder.empty() ? stateFolder() : fromUtf8(folder)) + QStringLiteral("/window.ini")) {
    m_due.setSingleShot(true);
    m_due.setInterval(restsFor);
    QObject::connect(&m_due, &QTimer::timeout, this, [this] {
        if (m_window.isVisible()) keep();
    });
}

WindowMemory::~WindowMemory() {
    m_grid.removeListener(*this);
}

void WindowMemory::restore() {
    if (QFileInfo::exists(m_file)) {
        const QSettings kept(m_file, QSettings::IniFormat);
        m_window.restoreGeometry(kept.value(QStringLiteral("geometry")).toByteArray());
        m_window.restoreState(kept.value(QStringLiteral("panes")).toByteArray(), layoutVersion);
        for (QToolBar* bar : m_window.findChildren<QToolBar*>()) // what was being asked is over
            bar->hide();
        const double size = kept.value(QStringLiteral("letters")).toDouble();
        if (std::ranges::find(letterSizes, size) != letterSizes.end()) m_grid.setFontSize(size);
    }
    m_window.installEventFilter(this);
    for (QDockWidget* pane : m_window.findChildren<QDockWidget*>())
        pane->installEventFilter(this);
    m_grid.addListener(*this);
}

WindowMemory::Look WindowMemory::look() const {
    return {m_window.saveGeometry(), m_window.saveState(layoutVersion), m_grid.FontSize()};
}

void WindowMemory::keep() {
    m_due.stop();
    Look now = look();
    if (now == m_kept || !QDir().mkpath(QFileInfo(m_file).path())) return;
    m_kept = std::move(now);
    QSettings kept(m_file, QSettings::IniFormat);
    kept.setValue(QStringLiteral("geometry"), m_kept.geometry);
    kept.setValue(QStringLiteral("panes"), m_kept.panes);
    kept.setValue(QStringLiteral("letters"), m_kept.letters);
}

bool WindowMemory::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::Move:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::WindowStateChange:
        m_due.start();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace shell
