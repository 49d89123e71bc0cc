#pragma once

#include "controls/half_screen.h"
#include "qt_desktop.h"

#include "project/book.h"

#include <QDialog>

class QLabel;
class QPushButton;

namespace shell {

class FlexGrid;

/// The window of the change-point list. A double click on the list writes it to a CSV file beside the
/// project.
class frmCP final : public QDialog {
  public:
    frmCP(sheet::Grid list, project::Book& book, QtDesktop& desktop, QWidget& window);

    ~frmCP() override;

    void MSFG_DblClick();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void Form_Resize();
    void arrange();

    project::Book& m_book;
    QtDesktop& m_desktop;
    sheet::Grid m_list;
    FlexGrid* m_grid;
    QWidget* m_drawing;
    QLabel* m_lblHint;
    QPushButton* m_cmdClose;
    HalfScreenRule m_halfScreen;
};

} // namespace shell
