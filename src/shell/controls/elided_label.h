#pragma once

#include <QLabel>

namespace shell {

/// A label that shortens its text to the width that it is given instead of widening its window.
class ElidedLabel final : public QLabel {
  public:
    /// `mode`: where the text gives way; a path in its middle, a message at its end.
    explicit ElidedLabel(Qt::TextElideMode mode, QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Qt::TextElideMode m_mode;
};

} // namespace shell
