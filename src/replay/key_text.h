#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace replay {

/// One key as a keyboard sends it.
struct Stroke {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    QString text;
};

/// The keys of a text such as "1.5{ENTER}{SHIFT+DOWN}{{}". Raises SessionError for a name that is not known.
[[nodiscard]] std::vector<Stroke> parseKeys(const QString& keys);

/// The keys that type `text` as it stands.
[[nodiscard]] std::vector<Stroke> typed(const QString& text);

/// Presses and releases a key on `widget`.
void send(QWidget& widget, const Stroke& stroke);

} // namespace replay
