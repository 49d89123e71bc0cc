#pragma once

#include "sheet/grid.h"

#include <QAbstractTableModel>

#include <functional>

namespace shell {

/// Shows a sheet::Grid to a view; holds no text of its own. Row 0 of the grid is the horizontal header, so
/// row r of the model is row r + 1 of the grid.
///
/// What the grid tells is gathered and passed to the view in one go by flush(): a command that writes many
/// cells costs the view one change. The first change after a flush calls `pending`. What happens while the
/// grid is hidden reaches the view as one reset when the grid is shown again.
class GridModel final : public QAbstractTableModel, public sheet::GridListener {
  public:
    explicit GridModel(sheet::Grid& grid, QObject* parent = nullptr);
    ~GridModel() override;

    std::function<void()> pending;

    /// The vertical header says the chainages beside the numbers of the rows.
    void setNumbersWithChainage(bool with) { m_numbersWithChainage = with; }
    [[nodiscard]] bool numbersWithChainage() const { return m_numbersWithChainage; }

    void flush();
    [[nodiscard]] const sheet::Grid& grid() const { return m_grid; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void textChanged(int row, int col, const std::string&) override { cellChanged(row, col); }
    void colourChanged(int row, int col, sheet::Colour) override { cellChanged(row, col); }
    void rowsInserted(int row, int count, sheet::Marks) override { rowsMoved(row + count); }
    void rowsRemoved(int row, const sheet::RemovedRows&, sheet::Marks) override { rowsMoved(row); }
    void cursorMoved() override { wake(); }
    void visibleChanged() override;
    void lookChanged() override;

  private:
    struct Box {
        int top, left, bottom, right;
    };
    static constexpr Box nothing{0x7FFFFFFF, 0x7FFFFFFF, -1, -1};

    void cellChanged(int row, int col);
    void rowsMoved(int from); ///< the rows from this one on are others than before
    void wake();
    [[nodiscard]] QString spokenColumn(int col) const; ///< its header, or its number where it has none

    sheet::Grid& m_grid;
    int m_rows; // data rows that the view knows of
    Box m_changed = nothing;
    bool m_headerChanged = false;
    bool m_allChanged = false;
    bool m_awake = false;
    bool m_numbersWithChainage = false;
};

/// Left for chainage and remark, right for the numbers between them.
[[nodiscard]] Qt::Alignment columnAlignment(int col);

} // namespace shell
