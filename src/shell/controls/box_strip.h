#pragma once

#include <QWidget>

#include <vector>

class QTableView;

namespace shell {

/// A line of controls over a table, one above each column, that follows the columns as they are scrolled and
/// resized. A control that gets the focus brings its column into sight. Apart from the table's own heading,
/// since what stands in there is kept from screen readers.
class BoxStrip final : public QWidget {
  public:
    explicit BoxStrip(QTableView& table);

    /// One control a column, which the strip owns, with its accessible name; those of before go. The columns
    /// become wide enough for them.
    void setBoxes(std::vector<QWidget*> boxes);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void arrange();

    QTableView& m_table;
    QWidget* m_inside; ///< as wide as the columns that are in sight
    std::vector<QWidget*> m_boxes;
};

} // namespace shell
