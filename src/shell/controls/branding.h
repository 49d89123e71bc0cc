#pragma once

#include <QIcon>
#include <QString>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QVBoxLayout;

// What makes the small windows one family: one way to lay them out, one size of titles, one drawing.

namespace shell::branding {

inline constexpr int drawingSide = 88;

/// The level on its tripod, sighting a staff; sharp at every scale.
class Drawing final : public QWidget {
  public:
    explicit Drawing(QWidget* parent, int side = drawingSide);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

[[nodiscard]] QIcon icon();

/// A label in the size of titles.
[[nodiscard]] QLabel* makeTitle(const QString& text, QWidget* parent);

/// A label for running text: wraps, and can be selected and read out.
[[nodiscard]] QLabel* makeText(const QString& text, QWidget* parent, const QString& name);

/// "Version " and the program's version.
[[nodiscard]] QString versionText();

/// Lays out a small window: the drawing at its left, what the caller adds to the returned layout at its
/// right.
[[nodiscard]] QVBoxLayout* layOut(QWidget& window, int side = drawingSide);

/// Buttons in one row at the right edge, of one width.
[[nodiscard]] QHBoxLayout* makeButtonRow(const QList<QWidget*>& buttons);

/// Puts a window without a frame of its own on the middle of the screen, with a thin edge around it.
void makeFrameless(QWidget& window);
void centre(QWidget& window);

} // namespace shell::branding
