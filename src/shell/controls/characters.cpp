#include "characters.h"

#include <QKeyEvent>

namespace shell {

char32_t characterOf(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    const bool control = modifiers.testFlag(Qt::ControlModifier);
    const bool alt = modifiers.testFlag(Qt::AltModifier);
    const int key = event.key();
    if (control && !alt && key >= Qt::Key_A && key <= Qt::Key_Z) return char32_t(key - Qt::Key_A + 1);
    // Ctrl and Alt together are AltGr on some systems: their text counts. Either alone types nothing.
    if (alt != control && key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Backspace) return 0;
    if (modifiers.testFlag(Qt::MetaModifier)) return 0;

    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return control ? 10 : 13;
    case Qt::Key_Backspace:
        return control ? 127 : 8;
    case Qt::Key_Escape:
        return 27;
    default:
        break;
    }
    // The decimal key of the keypad, whatever the layout has on it.
    if (modifiers.testFlag(Qt::KeypadModifier) && (key == Qt::Key_Comma || key == Qt::Key_Period))
        return U'.';
    const QList<uint> codes = event.text().toUcs4();
    return codes.isEmpty() ? 0 : char32_t(codes.front());
}

} // namespace shell
