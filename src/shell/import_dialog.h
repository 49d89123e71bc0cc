#pragma once

#include "exchange/table_import.h"

#include <QDialog>

class QCheckBox;
class QHBoxLayout;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

namespace shell {

/// What both kinds of import have: a preview above, what cannot be taken below it, where the rows go, and the
/// buttons. Lies over the grid of `window`.
class ImportDialog : public QDialog {
  public:
    ImportDialog(const QString& file, QWidget& window, QWidget& grid);

    [[nodiscard]] exchange::ImportPlace place() const;
    [[nodiscard]] virtual std::vector<exchange::BookRow> rows() const = 0;
    /// After the rows were taken: what is remembered for the next time.
    virtual void accepted_() {}

  protected:
    [[nodiscard]] QVBoxLayout& upper() { return *m_upper; }
    void addBeside(QWidget* widget); ///< in the line of "Replace the book"
    /// `taken`: how many rows will come; none disables Import.
    void showNotes(const std::vector<exchange::ImportNote>& notes, std::size_t taken);

  private:
    QVBoxLayout* m_upper;
    QListWidget* m_notes;
    QLabel* m_count;
    QRadioButton* m_replace;
    QPushButton* m_import;
    QHBoxLayout* m_line;
};

} // namespace shell
