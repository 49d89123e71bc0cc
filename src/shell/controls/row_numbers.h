#pragma once

#include "figures.h"

#include <QHeaderView>

#include <optional>

namespace shell {

/// The numbers of the rows. The view sets their width, so that a new row measures no texts of others, and
/// each is painted without a layout of its own: every key that moves the cursor marks another one.
class RowNumbers final : public QHeaderView {
  public:
    explicit RowNumbers(QWidget* parent) : QHeaderView(Qt::Vertical, parent) {}

    [[nodiscard]] QSize sizeHint() const override { return size(); }

  protected:
    void paintSection(QPainter* painter, const QRect& box, int row) const override;

  private:
    mutable std::optional<Figures> m_plain; // of the font last painted with
    mutable std::optional<Figures> m_bold;  // of rows that are selected
};

} // namespace shell
