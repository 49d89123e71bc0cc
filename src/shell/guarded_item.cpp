#include "guarded_item.h"

#include "frmGrl.h"
#include "text.h"

#include "entry/overwritten.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <set>

namespace shell {
namespace {

constexpr std::size_t rowsThatEndANotice = 2;

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

    void bookShown() override { followNotice(m_window.desktop().statusText()); }

  private:
    void toggle() {
        const bool on = m_window.book().Guarded = m_item->isChecked();
        m_window.desktop().status(on ? "Guarded editing is on." : "Guarded editing is off.");
        if (!QDir().mkpath(QFileInfo(m_file).path())) return;
        QSettings(m_file, QSettings::IniFormat).setValue(QStringLiteral("guarded"), on);
    }

    // The words about Undo go when another step stands above, the whole line when the user is elsewhere.
    void followNotice(const QString& shown) {
        const int row = m_window.book().MSFG.Row();
        const std::uint64_t steps = m_window.journal().version();
        if (shown.endsWith(text(entry::undoHint)) && shown != m_notice) {
            m_notice = shown;
            m_steps = steps;
            m_row = row;
            m_rows.clear();
        }
        if (m_notice.isEmpty()) return;
        if (shown != m_notice) return m_notice.clear();
        if (row != m_row) m_rows.insert(row);
        if (m_rows.size() >= rowsThatEndANotice) {
            m_notice.clear();
            m_window.desktop().status({});
        } else if (steps != m_steps && shown.endsWith(text(entry::undoHint))) {
            m_notice.chop(text(entry::undoHint).size());
            m_window.desktop().status(m_notice.toStdString());
        }
    }

    frmGrl& m_window;
    QString m_file;
    QAction* m_item = nullptr;
    QString m_notice; // as the bar shows it; empty: none
    std::uint64_t m_steps = 0;
    int m_row = 0;
    std::set<int> m_rows; // that the cursor has been in since
};

} // namespace

std::unique_ptr<WindowPart> makeGuardedItem(frmGrl& window) {
    return std::make_unique<GuardedItem>(window);
}

} // namespace shell
