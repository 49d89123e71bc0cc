#pragma once

#include <QHeaderView>

#include <vector>

namespace shell {

/// The heading of a table with a control under each caption, in sight however far the rows are scrolled. A
/// control that gets the focus brings its column into sight.
class BoxHeader final : public QHeaderView {
  public:
    explicit BoxHeader(QWidget* parent);

    /// One control a column, which the header owns; those of before go.
    void setBoxes(std::vector<QWidget*> boxes);

  protected:
    [[nodiscard]] QSize sectionSizeFromContents(int section) const override;
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;
    void updateGeometries() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void arrange();
    [[nodiscard]] int boxHeight() const;

    std::vector<QWidget*> m_boxes;
};

} // namespace shell
