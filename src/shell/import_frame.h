#pragma once

#include "controls/panel.h"

#include "exchange/table_import.h"

#include <functional>
#include <vector>

class QLabel;
class QListWidget;
class QRadioButton;
class QVBoxLayout;

namespace shell {

class CommandButton;

/// The panel of an import: a preview above, what cannot be taken below it, where the rows go, and the
/// buttons. Return imports and Esc cancels.
class ImportFrame : public Panel {
  public:
    /// `grid` is the book that rows may go below of.
    ImportFrame(const QString& name, const QString& file, const sheet::Grid& grid, QWidget* parent);

    std::function<void()> cmdImport_Click, cmdCancel_Click;

    [[nodiscard]] exchange::ImportPlace place() const;
    [[nodiscard]] virtual const std::vector<exchange::BookRow>& rows() const = 0;
    /// After the rows were taken: what is remembered for the next time.
    virtual void accepted() {}
    virtual void giveFocus() = 0; ///< to the control that is looked at first

  protected:
    [[nodiscard]] QVBoxLayout& upper() { return *m_upper; }
    void addBeside(QWidget* widget); ///< in the line of "Replace the book"
    /// Tab goes through `upper`, then through what all imports have.
    void setTabOrders(std::vector<QWidget*> upper);
    void showNotes(std::vector<exchange::ImportNote> notes);
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showAll();

    const sheet::Grid& m_grid;
    std::vector<exchange::ImportNote> m_notes;
    QVBoxLayout* m_upper;
    QListWidget* m_list;
    QLabel* m_count;
    QRadioButton* m_replace;
    QRadioButton* m_below;
    QWidget* m_beside = nullptr;
    CommandButton* m_cancel;
    CommandButton* m_import;
};

} // namespace shell
