#include "key_text.h"

#include "session.h"

#include <QHash>
#include <QTest>

namespace replay {
namespace {

const QHash<QString, Stroke>& namedKeys() {
    static const QHash<QString, Stroke> keys{
        {"ENTER", {Qt::Key_Return, {}, "\r"}},
        {"BS", {Qt::Key_Backspace, {}, "\b"}},
        {"DEL", {Qt::Key_Delete, {}, "\x7f"}},
        {"ESC", {Qt::Key_Escape, {}, "\x1b"}},
        {"TAB", {Qt::Key_Tab, {}, "\t"}},
        {"UP", {Qt::Key_Up, {}, {}}},
        {"DOWN", {Qt::Key_Down, {}, {}}},
        {"LEFT", {Qt::Key_Left, {}, {}}},
        {"RIGHT", {Qt::Key_Right, {}, {}}},
        {"HOME", {Qt::Key_Home, {}, {}}},
        {"END", {Qt::Key_End, {}, {}}},
        {"PGUP", {Qt::Key_PageUp, {}, {}}},
        {"PGDN", {Qt::Key_PageDown, {}, {}}},
        {"F2", {Qt::Key_F2, {}, {}}},
        {"F3", {Qt::Key_F3, {}, {}}},
        {"F9", {Qt::Key_F9, {}, {}}},
        {"F12", {Qt::Key_F12, {}, {}}},
        {"SHIFT+UP", {Qt::Key_Up, Qt::ShiftModifier, {}}},
        {"SHIFT+DOWN", {Qt::Key_Down, Qt::ShiftModifier, {}}},
        {"SHIFT+LEFT", {Qt::Key_Left, Qt::ShiftModifier, {}}},
        {"SHIFT+RIGHT", {Qt::Key_Right, Qt::ShiftModifier, {}}},
        {"KP/", {Qt::Key_Slash, Qt::KeypadModifier, "/"}},
        {"CTRL+A", {Qt::Key_A, Qt::ControlModifier, "\x01"}},
        {"CTRL+C", {Qt::Key_C, Qt::ControlModifier, "\x03"}},
        {"CTRL+V", {Qt::Key_V, Qt::ControlModifier, "\x16"}},
        {"CTRL+X", {Qt::Key_X, Qt::ControlModifier, "\x18"}},
        {"CTRL+Y", {Qt::Key_Y, Qt::ControlModifier, "\x19"}},
        {"CTRL+Z", {Qt::Key_Z, Qt::ControlModifier, "\x1a"}},
        {"CTRL+S", {Qt::Key_S, Qt::ControlModifier, "\x13"}},
        {"CTRL+F", {Qt::Key_F, Qt::ControlModifier, "\x06"}},
        {"CTRL+G", {Qt::Key_G, Qt::ControlModifier, "\x07"}},
        {"F4", {Qt::Key_F4, {}, {}}},
        {"CTRL+ENTER", {Qt::Key_Return, Qt::ControlModifier, "\r"}},
        {"{", {Qt::Key_BraceLeft, {}, "{"}},
    };
    return keys;
}

// The character that starts at `at`, which is moved behind it.
Stroke character(const QString& text, qsizetype& at) {
    const qsizetype length = text[at].isHighSurrogate() && at + 1 < text.size() ? 2 : 1;
    const QString one = text.mid(at, length);
    at += length;
    if (one == "\n" || one == "\r") return namedKeys()["ENTER"];
    const char16_t code = one[0].toUpper().unicode();
    const bool hasKey = length == 1 && code >= 0x20 && code < 0x7f;
    return {hasKey ? static_cast<Qt::Key>(code) : Qt::Key_unknown,
            one[0].isUpper() ? Qt::ShiftModifier : Qt::NoModifier, one};
}

} // namespace

std::vector<Stroke> parseKeys(const QString& keys) {
    std::vector<Stroke> strokes;
    for (qsizetype at = 0; at < keys.size();) {
        if (keys[at] != u'{') {
            strokes.push_back(character(keys, at));
            continue;
        }
        // "{{}" is a brace, and so the end is looked for behind the first character of the name.
        const qsizetype end = keys.indexOf(u'}', at + 2);
        const QString name = keys.mid(at + 1, end - at - 1).toUpper();
        if (end < 0 || !namedKeys().contains(name)) throw SessionError("no such key: " + keys.mid(at, 16));
        strokes.push_back(namedKeys()[name]);
        at = end + 1;
    }
    return strokes;
}

std::vector<Stroke> typed(const QString& text) {
    std::vector<Stroke> strokes;
    for (qsizetype at = 0; at < text.size();)
        strokes.push_back(character(text, at));
    return strokes;
}

void send(QWidget& widget, const Stroke& stroke) {
    QTest::sendKeyEvent(QTest::Click, &widget, stroke.key, stroke.text, stroke.modifiers);
}

} // namespace replay
