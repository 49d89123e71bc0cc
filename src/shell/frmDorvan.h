#pragma once

#include "desktop/desktop.h"
#include "project/book.h"

#include <QDialog>

#include <string>

class QComboBox;
class QFileSystemModel;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;

namespace shell {

/// The dialog that chooses the default folder: a tree of folders with a path line. OK without a choice keeps
/// the folder that lblDD shows.
class frmDorvan final : public QDialog {
  public:
    frmDorvan(project::Book& book, desktop::Desktop& desktop, QWidget* parent = nullptr);

  private:
    void buildControls();
    void Form_Load();
    void Drive1_Change();
    void Dir1_Change(const QString& folder);  ///< the user has chosen a folder of the tree
    void txtPath_Change(const QString& path); ///< the user has typed
    void cmdOK_Click();
    void goTo(const QString& folder);

    project::Book& m_book;
    desktop::Desktop& m_desktop;
    QComboBox* m_Drive1;
    QTreeView* m_Dir1;
    QFileSystemModel* m_folders;
    QLineEdit* m_txtPath;
    QLabel* m_lblDD;
    QPushButton* m_cmdOK;
    std::string m_folder;    ///< what lblDD shows
    std::string m_choice;    ///< empty while the user has chosen nothing
    bool m_arriving = false; ///< the tree still settles at the folder that it was sent to
};

} // namespace shell
