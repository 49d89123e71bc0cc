#pragma once

#include "import_frame.h"

#include "tables/table.h"

#include <functional>
#include <string>

class QCheckBox;
class QComboBox;
class QSpinBox;
class QTableWidget;

namespace shell {

class BoxStrip;

/// The choice of columns: sheet, heading row, and above each column of the preview a box that says what it
/// is.
class TableFrame final : public ImportFrame {
  public:
    /// `read` gives another sheet by its name; what it raises is told and the sheet stays.
    using Read = std::function<tables::Table(const std::string& sheet)>;
    TableFrame(const QString& file, tables::Table table, Read read, std::string profiles,
               const sheet::Grid& grid, QWidget* parent);

    [[nodiscard]] const std::vector<exchange::BookRow>& rows() const override { return m_taken.rows; }
    void accepted() override;
    void giveFocus() override;

  private:
    void chooseSheet(int index);
    void chooseHeading(int row);
    void showTable();
    void fillPreview();
    void fillBoxes();
    void takeColumns();
    [[nodiscard]] std::size_t firstShown() const;

    tables::Table m_table;
    Read m_read;
    std::string m_profiles;
    exchange::Layout m_layout;
    exchange::TakenTable m_taken;
    QComboBox* m_sheets;
    QSpinBox* m_heading;
    QTableWidget* m_preview;
    BoxStrip* m_strip;
    QCheckBox* m_remember;
};

} // namespace shell
