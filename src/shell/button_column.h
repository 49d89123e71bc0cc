#pragma once

#include <QWidget>

#include <vector>

namespace shell {

class CommandButton;

/// The column of command buttons beside the grid: groups set apart by a wider gap, one width for all. A line
/// of the column holds one button, two halves, or a wide and a narrow one; hidden buttons take no room.
class ButtonColumn final : public QWidget {
  public:
    explicit ButtonColumn(QWidget* parent);

    /// How much of a line's width a button takes; a line is full when its parts make up the whole.
    enum class Part { Whole, Half, Wide, Narrow };

    void add(CommandButton* button, int group, Part part);

    /// The least width at which no caption takes more than two lines.
    [[nodiscard]] int leastWidth() const;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

  private:
    struct Place {
        CommandButton* button;
        int group;
        Part part;
    };

    void arrange();

    std::vector<Place> m_places;
};

} // namespace shell
