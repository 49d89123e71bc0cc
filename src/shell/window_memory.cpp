#include "window_memory.h"

#include "text.h"

#include "sheet/grid.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QToolBar>

#include <algorithm>
#include <array>

namespace shell {
namespace {

constexpr std::array letterSizes{8.25, 9.75, 12.0};
constexpr int layoutVersion = 1; // of the panes and bars; another one's places are not taken

QString stateFolder() {
    QString home = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(home)) home = QDir::homePath() + QStringLiteral("/.local/state");
    return home + QStringLiteral("/zavrogrl");
}

} // namespace

WindowMemory::WindowMemory(QMainWindow& window, sheet::Grid& grid, const std::string& folder)
    : m_window(window),
      m_grid(grid),
      m_file((folder.empty() ? stateFolder() : fromUtf8(folder)) + QStringLiteral("/window.ini")) {}

void WindowMemory::restore() const {
    if (!QFileInfo::exists(m_file)) return;
    const QSettings kept(m_file, QSettings::IniFormat);
    m_window.restoreGeometry(kept.value(QStringLiteral("geometry")).toByteArray());
    m_window.restoreState(kept.value(QStringLiteral("panes")).toByteArray(), layoutVersion);
    for (QToolBar* bar : m_window.findChildren<QToolBar*>()) // what was being asked is over
        bar->hide();
    const double size = kept.value(QStringLiteral("letters")).toDouble();
    if (std::ranges::find(letterSizes, size) != letterSizes.end()) m_grid.setFontSize(size);
}

void WindowMemory::keep() const {
    if (!QDir().mkpath(QFileInfo(m_file).path())) return;
    QSettings kept(m_file, QSettings::IniFormat);
    kept.setValue(QStringLiteral("geometry"), m_window.saveGeometry());
    kept.setValue(QStringLiteral("panes"), m_window.saveState(layoutVersion));
    kept.setValue(QStringLiteral("letters"), m_grid.FontSize());
}

} // namespace shell
