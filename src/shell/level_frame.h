#pragma once

#include "import_frame.h"

#include "exchange/digital_levels.h"

class QCheckBox;
class QLineEdit;
class QTableWidget;

namespace shell {

/// The lines of a digital level's file with what their readings and the levels in the file say. A line that
/// disagrees is taken only when the user ticks it.
class LevelFrame final : public ImportFrame {
  public:
    LevelFrame(const QString& file, exchange::LevelFile levels, const sheet::Grid& grid, QWidget* parent);

    [[nodiscard]] const std::vector<exchange::BookRow>& rows() const override { return m_rows; }
    void giveFocus() override;

  private:
    void fillLines();
    void takeLine();

    exchange::LevelFile m_file;
    std::vector<exchange::BookRow> m_rows;
    QTableWidget* m_lines;
    QLineEdit* m_points;
    QCheckBox* m_take;
};

} // namespace shell
