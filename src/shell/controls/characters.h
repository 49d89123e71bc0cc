#pragma once

class QKeyEvent;

namespace shell {

/// The character code that a key types: 8 Backspace, 9 Tab, 10 Ctrl+Enter, 13 Enter, 27 Esc, 1 to 26 for
/// Ctrl+A to Ctrl+Z, else the code point of its text. 0 for a key that types nothing and for Alt with a
/// letter.
[[nodiscard]] char32_t characterOf(const QKeyEvent& event);

} // namespace shell
