#include "notice_line.h"

#include "frmGrl.h"
#include "text.h"

#include <set>

namespace shell {
namespace {

constexpr std::size_t rowsThatEndANotice = 2;

class NoticeLine final : public WindowPart {
  public:
    explicit NoticeLine(frmGrl& window) : m_window(window) {
        window.book().MSFG.addListener(window.book().notices);
    }
    ~NoticeLine() override { m_window.book().MSFG.removeListener(m_window.book().notices); }

    void bookShown() override {
        const sheet::Notices::Line line = m_window.book().notices.takeLine();
        if (!line.text.empty())
            tell(line);
        else if (!m_shown.isEmpty())
            follow();
        m_messages = m_window.desktop().messages();
        m_made = m_window.journal().stepsMade();
    }

  private:
    void tell(const sheet::Notices::Line& line) {
        const QtDesktop& desktop = m_window.desktop();
        m_front = desktop.messages() == m_messages ? std::string() : toUtf8(desktop.statusText());
        m_line = (m_front.empty() ? "" : m_front + ' ') + line.text;
        m_hint = m_window.journal().stepsMade() != m_made && line.remedy != sheet::Notice::None;
        m_row = m_window.book().MSFG.Row();
        m_rows.clear();
        m_steps = m_window.journal().version();
        const bool guard = m_hint && line.remedy == sheet::Notice::UndoOrGuard;
        show(m_line + (!m_hint ? ""
                       : guard ? " Ctrl+Z takes it back; Guarded editing keeps it from happening."
                               : " Ctrl+Z takes it back."));
    }

    // The words about Undo go when another step stands above, the whole notice when the user is elsewhere.
    void follow() {
        if (m_window.desktop().statusText() != m_shown) return m_shown.clear();
        if (const int row = m_window.book().MSFG.Row(); row != m_row) m_rows.insert(row);
        if (m_rows.size() >= rowsThatEndANotice) {
            show(m_front);
            m_shown.clear();
        } else if (m_hint && m_window.journal().version() != m_steps) {
            m_hint = false;
            show(m_line);
        }
    }

    void show(const std::string& message) {
        m_window.desktop().status(message);
        m_shown = m_window.desktop().statusText();
    }

    frmGrl& m_window;
    int m_messages = 0;       ///< of the status bar after the last action
    std::uint64_t m_made = 0; ///< steps of the history by then
    QString m_shown;          ///< the bar with the notice; empty: none
    std::string m_front;      ///< what the action said itself
    std::string m_line;       ///< with the notice, without the words about Undo
    bool m_hint = false;
    std::uint64_t m_steps = 0;
    int m_row = 0;
    std::set<int> m_rows; ///< that the cursor has been in since
};

} // namespace

std::unique_ptr<WindowPart> makeNoticeLine(frmGrl& window) {
    return std::make_unique<NoticeLine>(window);
}

} // namespace shell
