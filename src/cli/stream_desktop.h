#pragma once

#include "desktop/desktop.h"

#include <iosfwd>

namespace cli {

/// The desktop of a program without a window: what it is told goes to a stream, line by line, and questions
/// are answered as a user who backs out would, but for those that `agree` says Yes to.
class StreamDesktop : public desktop::Desktop {
  public:
    explicit StreamDesktop(std::ostream& messages, bool agree = false)
        : m_messages(messages), m_agree(agree) {}

    /// Message boxes name `path` from here on; not when it is empty.
    void setAbout(std::string path) { m_about = std::move(path); }

    desktop::Answer messageBox(std::string_view text, desktop::Buttons buttons,
                               std::string_view title) override;
    std::string inputBox(std::string_view prompt, std::string_view title, std::string_view initial) override;
    std::optional<std::string> fileDialog(desktop::FileDialog kind, std::string_view initialName) override;
    std::optional<std::string> clipboardText() override { return {}; }
    void setClipboardText(std::string_view) override {}
    void beep() override {}
    void showProgress() override {}
    void setProgress(float) override {}
    void hideProgress() override {}
    void status(std::string_view message) override;
    void focusGrid() override {}
    bool moveToTrash(std::string_view) override { return false; }
    std::chrono::system_clock::time_point now() override { return std::chrono::system_clock::now(); }
    std::string programFolder() override;

  private:
    std::ostream& m_messages;
    bool m_agree;
    std::string m_about;
};

} // namespace cli
