#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace shell {

/// A text as the user sees it: every caption, tooltip and message of the window passes here, so that a
/// translation file can be laid over the English texts.
[[nodiscard]] QString text(const char* english);

/// The same for a text that a command hands to the desktop.
[[nodiscard]] QString text(std::string_view english);

/// UTF-8 to Qt and back.
[[nodiscard]] QString fromUtf8(std::string_view utf8);
[[nodiscard]] std::string toUtf8(const QString& text);

} // namespace shell
