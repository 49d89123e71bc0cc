#include "stream_desktop.h"

#include "project/program_folder.h"

#include <ostream>

namespace cli {

desktop::Answer StreamDesktop::messageBox(std::string_view text, desktop::Buttons buttons, std::string_view) {
    if (!m_about.empty()) m_messages << "zavrogrl-cli: " << m_about << ": ";
    m_messages << text << '\n';
    if (buttons == desktop::Buttons::Ok) return desktop::Answer::Ok;
    if (m_agree) return desktop::Answer::Yes;
    return buttons == desktop::Buttons::YesNo ? desktop::Answer::No : desktop::Answer::Cancel;
}

std::string StreamDesktop::inputBox(std::string_view, std::string_view, std::string_view) {
    return {};
}

std::optional<std::string> StreamDesktop::fileDialog(desktop::FileDialog, std::string_view) {
    return {};
}

void StreamDesktop::status(std::string_view message) {
    if (!message.empty()) m_messages << message << '\n';
}

std::string StreamDesktop::programFolder() {
    return project::programFolder();
}

} // namespace cli
