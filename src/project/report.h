#pragma once

#include "basic/runtime_error.h"
#include "desktop/desktop.h"

#include <string>
#include <string_view>
#include <utility>

namespace project {

/// `text` with a full stop, unless it ends a sentence already.
[[nodiscard]] inline std::string asSentence(std::string text) {
    if (!text.empty() && std::string_view(".!?").find(text.back()) == std::string_view::npos) text += '.';
    return text;
}

/// What a command has to say besides its messages; the status bar gets it all at once, at the command's end.
class Report {
  public:
    explicit Report(desktop::Desktop& desktop) : m_desktop(desktop) {}
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;
    ~Report() {
        if (!m_text.empty()) m_desktop.status(m_text);
    }

    void add(std::string_view sentence) {
        if (sentence.empty()) return;
        if (!m_text.empty()) m_text += ' ';
        m_text += sentence;
    }
    /// What must be read even where the bar cuts the rest off.
    void addFirst(std::string_view sentence) {
        const std::string rest = std::exchange(m_text, std::string(sentence));
        add(rest);
    }
    void clear() { m_text.clear(); }
    /// Runs a step that the command goes on without; the failure's description, empty when it went well.
    template <typename Step>
    std::string attempt(std::string_view failure, Step&& step) {
        try {
            step();
            return {};
        } catch (const basic::RuntimeError& error) {
            add(asSentence(std::string(failure) + ": " + error.told()));
            return error.told();
        }
    }
    [[nodiscard]] const std::string& text() const { return m_text; }

  private:
    desktop::Desktop& m_desktop;
    std::string m_text;
};

} // namespace project
