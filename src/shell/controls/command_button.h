#pragma once

#include <QPushButton>

#include <functional>
#include <utility>

namespace shell {

/// A push button as the windows of the program know it: a long caption wraps to two lines, Return clicks the
/// button that has the focus, and Ctrl+Return does not.
class CommandButton final : public QPushButton {
  public:
    CommandButton(const QString& name, const QString& caption, QWidget* parent);

    std::function<void()> mouseMove;        ///< the pointer moved over the button
    std::function<void(char32_t)> keyPress; ///< a character was typed on it, before it clicks

    void setCaptionBold(bool bold);
    [[nodiscard]] bool captionBold() const { return font().bold(); }

    /// Whether the click at hand came from the access key; asking forgets it.
    [[nodiscard]] bool takeAccessKey() { return std::exchange(m_byAccessKey, false); }

    /// The least width at which the caption, bold, takes at most `lines` lines.
    [[nodiscard]] int widthForLines(int lines) const;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

  private:
    [[nodiscard]] QFont plainFont() const;
    [[nodiscard]] QFont boldFont() const;
    /// The font of the caption, drawn closer where bold letters would need one line more than plain ones.
    [[nodiscard]] QFont fittingFont(int width) const;
    [[nodiscard]] QRect captionBox(const QFont& face, int width) const;

    bool m_byAccessKey = false;
};

/// A caption without the mark of its access key.
[[nodiscard]] QString plainCaption(QString caption);

} // namespace shell
