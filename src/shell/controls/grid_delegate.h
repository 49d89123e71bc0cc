#pragma once

#include <QStyledItemDelegate>

namespace shell {

class GridModel;

/// Paints the cells of a FlexGrid straight from the sheet: marking colours with text that stays readable on
/// them, the selected range, and a frame around the cursor cell.
class GridDelegate final : public QStyledItemDelegate {
  public:
    explicit GridDelegate(const GridModel& model, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

    static constexpr int padding = 3; ///< between a cell's text and its left and right edge

  private:
    const GridModel& m_model;
};

} // namespace shell
