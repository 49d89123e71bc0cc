#pragma once

#include "desktop/desktop.h"
#include "spreadsheet/spreadsheet.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <string>

class QLabel;
class QProgressBar;

namespace shell {

/// The title of message boxes that have none of their own, and the name of the program.
inline constexpr const char* applicationTitle = "ZavroGrl";

/// What a window of the program finds around it; a session or a test brings its own.
struct Surroundings {
    std::string programFolder;  ///< empty: the user's own, below the XDG data home
    std::string stateFolder;    ///< of what the window remembers; empty: below the XDG state home
    std::string templateFolder; ///< empty: where the installation keeps its templates
    std::string tableReader;    ///< the program that reads table files; empty: the installed one
    bool hasTrash = true;
    bool offersRecovery = true;
    std::function<void()> endProgram;                             ///< empty: leaves the event loop
    std::function<void()> beeped;                                 ///< told of every beep
    std::shared_ptr<spreadsheet::RunningSpreadsheet> spreadsheet; ///< empty: the one that runs on this system
};

/// The desktop on Qt: modal boxes over the active window, the common file dialog, clipboard, trash, and the
/// progress bar and status field of the main window once they are given.
class QtDesktop final : public desktop::Desktop {
  public:
    /// Makes the program folder (mode 0700) when it is missing and lays in the installed templates that are
    /// not there; what is there is never overwritten. A folder that cannot be made or filled is said in the
    /// status bar later.
    explicit QtDesktop(Surroundings surroundings = {});

    [[nodiscard]] const Surroundings& surroundings() const { return m_surroundings; }
    void setWindow(QWidget& window) { m_window = &window; } ///< over which boxes appear
    void attach(QProgressBar& progress, QLabel& status, QWidget& grid);

    desktop::Answer messageBox(std::string_view message, desktop::Buttons buttons = desktop::Buttons::Ok,
                               std::string_view title = {}) override;
    std::string inputBox(std::string_view prompt, std::string_view title,
                         std::string_view initial = {}) override;
    std::optional<std::string> fileDialog(desktop::FileDialog kind, std::string_view initialName) override;
    std::optional<std::string> clipboardText() override;
    void setClipboardText(std::string_view text) override;
    void beep() override;
    void showProgress() override;
    void setProgress(float percent) override;
    void hideProgress() override;
    void status(std::string_view message) override;
    [[nodiscard]] QString statusText() const;                 ///< what the status field says
    [[nodiscard]] int messages() const { return m_messages; } ///< how many it was given
    void focusGrid() override;
    bool moveToTrash(std::string_view path) override;
    std::chrono::system_clock::time_point now() override { return std::chrono::system_clock::now(); }
    std::string programFolder() override { return m_surroundings.programFolder; }

    void endProgram() const;
    [[nodiscard]] const std::string& tableReader() const { return m_surroundings.tableReader; }
    [[nodiscard]] spreadsheet::RunningSpreadsheet& spreadsheet() { return *m_surroundings.spreadsheet; }

  private:
    [[nodiscard]] QWidget* owner() const;

    Surroundings m_surroundings;
    QPointer<QWidget> m_window;
    QPointer<QProgressBar> m_progress;
    QPointer<QLabel> m_status;
    QPointer<QWidget> m_grid;
    QString m_lastFolder;
    int m_messages = 0;
    QString m_early; // said before there was a status bar
};

} // namespace shell
