#include "guarded_item.h"

#include "frmGrl.h"
#include "text.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace shell {
namespace {

QString settingsFile(const std::string& stateFolder) {
    QString home = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (!QDir::isAbsolutePath(home)) home = QDir::homePath() + QStringLiteral("/.config");
    return (stateFolder.empty() ? home + QStringLiteral("/zavrogrl") : fromUtf8(stateFolder)) +
           QStringLiteral("/editing.ini");
}

class GuardedItem final : public WindowPart {
  public:
    explicit GuardedItem(frmGrl& window) : m_window(window), m_file(settingsFile(window.stateFolder())) {
        QMenu& menu = window.menu("mnuEdit");
        window.addItem(menu, {"sepGuarded", "-"});
        m_item = &window.addItem(menu, {.name = "mnuGuarded",
                                        .caption = "Gu&arded editing",
                                        .click = [this] { toggle(); },
                                        .action = {"Guarded editing"},
                                        .checkable = true});
        if (QFileInfo::exists(m_file))
            window.book().Guarded =
                QSettings(m_file, QSettings::IniFormat).value(QStringLiteral("guarded")).toBool();
        m_item->setChecked(window.book().Guarded);
    }

  private:
    void toggle() {
        const bool on = m_window.book().Guarded = m_item->isChecked();
        m_window.desktop().status(on ? "Guarded editing is on." : "Guarded editing is off.");
        if (!QDir().mkpath(QFileInfo(m_file).path())) return;
        QSettings(m_file, QSettings::IniFormat).setValue(QStringLiteral("guarded"), on);
    }

    frmGrl& m_window;
    QString m_file;
    QAction* m_item = nullptr;
};

} // namespace

std::unique_ptr<WindowPart> makeGuardedItem(frmGrl& window) {
    return std::make_unique<GuardedItem>(window);
}

} // namespace shell
