#pragma once

#include <QSize>

class QWidget;

namespace shell {

/// The rule of the windows that can be resized: no smaller than half the screen in either direction. The
/// width is mended first; the change of size that this brings runs the rule again for the height.
class HalfScreenRule {
  public:
    /// A window this small is about to be minimised.
    [[nodiscard]] static bool leavesAlone(const QWidget& window);
    void apply(QWidget& window);

  private:
    QSize m_mendedFrom;
};

} // namespace shell
