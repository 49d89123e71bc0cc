#pragma once

#include <QFrame>

#include <map>

class QGridLayout;
class QHBoxLayout;
class QLabel;
class QScrollArea;

namespace shell {

/// A frame of controls laid over the grid: a title, a body of aligned labels and boxes, and a row of buttons
/// with the default action at its right end. When the window is too small for it the body scrolls; nothing is
/// ever cut.
class Panel : public QFrame {
  public:
    Panel(const QString& name, const QString& title, QWidget* parent);

    /// Takes its place in the middle of `area`, or of the larger `most` when it does not fit there; kept for
    /// later changes of its size.
    void placeWithin(const QRect& area, const QRect& most);

    /// The column of the body that is being filled: label, box, unit.
    [[nodiscard]] QGridLayout& body() { return *m_body; }
    /// What follows stands in a new column to the right of what there is.
    void nextColumn();
    [[nodiscard]] QHBoxLayout& buttons() { return *m_buttons; } ///< filled from the right end's left side on

    /// One line of the body: label, field, and a unit behind it. The label is the field's buddy and gives it
    /// its accessible name. Returns the label.
    QLabel* addLine(const QString& label, QWidget* field, const QString& unit = {});
    /// Shows or hides the label, the field and the unit of a line; the room stays, so that nothing jumps.
    void setLineVisible(QWidget* field, bool visible);
    /// One widget over the whole width of the body.
    void addWide(QWidget* widget);
    /// One widget in place of the body. The panel takes all the room that it is given.
    void fillWith(QWidget* content);

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Line {
        QLabel* caption;
        QLabel* unit; // none: no unit
    };

    void place();

    QRect m_area;
    QRect m_most;
    QScrollArea* m_scroll;
    QHBoxLayout* m_columns;
    QGridLayout* m_body = nullptr;
    std::map<QWidget*, Line> m_lines;
    QHBoxLayout* m_buttons;
    bool m_fills = false;
};

} // namespace shell
