#pragma once

#include "action.h"
#include "controls/half_screen.h"
#include "qt_desktop.h"
#include "window_memory.h"

#include "entry/key_entry.h"
#include "exchange/export_frame.h"
#include "project/recovery.h"
#include "sheet/journal.h"

#include <QKeySequence>
#include <QMainWindow>
#include <QTimer>

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QAction;
class QLabel;
class QMenu;
class QProgressBar;
class QScrollArea;

namespace shell {

class ButtonColumn;
class CommandButton;
class ExportPanel;
class FlexGrid;
class Panel;
class SettingsFrame;
class WindowPart;

/// The main window: the grid, the column of command buttons, the menus, the frames laid over the grid, the
/// progress bar and the status bar. It owns the book for the whole run. Handlers are named after the control
/// and the event that they handle; a menu item's handler runs the handler of its button.
class frmGrl final : public QMainWindow {
  public:
    explicit frmGrl(Surroundings surroundings = {}) : frmGrl(QtDesktop(std::move(surroundings))) {}
    /// On the desktop that is there already, with what it has to say since the program began.
    explicit frmGrl(QtDesktop desktop);
    ~frmGrl() override;

    /// Opens the window: header, start-up files, focus. Call once.
    void Form_Load();

    [[nodiscard]] project::Book& book() { return m_book; }
    [[nodiscard]] sheet::Journal& journal() { return m_journal; }
    [[nodiscard]] QtDesktop& desktop() { return m_desktop; }
    [[nodiscard]] FlexGrid& grid() { return *m_grid; }
    /// Where the program keeps what it remembers; empty: below the XDG state home.
    [[nodiscard]] const std::string& stateFolder() const { return m_stateFolder; }
    [[nodiscard]] bool ended() const { return m_ended; } ///< the exit command has ended the program

    /// The one edge: everything that the user does runs through here. Checks the cell that a walk over the
    /// grid would leave half keyed; what is thrown and nobody expects is told, with a copy of the unsaved
    /// book set aside, and the program goes on.
    void act(const Action& action, const std::function<void()>& what);
    /// The net of act() for what escapes elsewhere; to be called while the exception is handled. `what` was
    /// going on.
    void rescue(const char* what) noexcept;
    /// The Settings, the transfer's frame or a panel of a part lies over the grid.
    [[nodiscard]] bool frameIsOpen() const;
    /// Lays a panel of a part, a child of the central widget, over the grid; nothing: takes it away.
    /// Meanwhile the grid, the buttons and the other frames wait. Within an action.
    void layOver(Panel* panel);

    /// Moves the cursor as the user does, with the check of the cell that is left; within an action.
    void moveCursor(int row, int col) { MSFG_Move(row, col, false); }

    /// A key that the grid hears, typed by a command; within an action.
    void typeKey(char32_t character) { typeIntoGrid(character); }

    /// A menu of the bar: one that is there, or a new one before the menu `before` (empty: at the end).
    [[nodiscard]] QMenu& menu(const char* name);
    QMenu& addMenu(const char* name, const char* caption, const char* before = "");
    /// Adds an item behind the ones that the menu has, or where it says. While a frame is open its shortcut
    /// is no key of the window's, and an item whose action is held is disabled.
    QAction& addItem(QMenu& menu, const MenuItem& item);

    /// Brings caption, menus, grid and status bar in step with the book. Runs after every command and key.
    void showBook();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    using Handler = void (frmGrl::*)();
    struct ButtonRow;
    struct MenuRow;
    static const ButtonRow buttonTable[];
    static const MenuRow menuTable[];

    void buildButtons();
    void buildMenus();
    void buildStatusBar();
    void buildFrames();
    void buildParts();
    void listenToGrid();
    void holdShortcuts(); ///< while a frame is open
    void buildTabOrder();
    void arrange();
    [[nodiscard]] CommandButton& button(const char* name) { return *m_buttons.at(name); }
    void showStatus();

    void beginStep(const Action& action);
    void endStep(const Action& action);
    void tellWarnings();
    void takeStepBack() noexcept; ///< what the open one has changed so far
    void run(const Action& action, Handler command);
    void runMenu(const Action& action, const std::function<void()>& click);
    void typeIntoGrid(char32_t character);
    void typeOnButton(char32_t character); ///< digits, point and minus are meant for the grid
    void enableForEntry(bool enable);
    void endProgram();

    // The window and the grid.
    void Form_Resize();
    void Form_Unload();
    void Form_MouseMove();
    void MSFG_KeyPress(char32_t character);
    void MSFG_KeyDown(entry::EditKey key);
    void MSFG_LeaveCell();
    void MSFG_Move(int row, int col, bool extend);
    void MSFG_MouseMove();
    void MouseMove(CommandButton& button, bool bold);

    // The buttons.
    void cmdNew_Click();
    void cmdOpen_Click();
    void cmdSave_Click();
    void cmdCal_Click();
    void cmdCP_Click();
    void cmdList_Click();
    void cmdIns_Click();
    void cmdInss_Click();
    void cmdDel_Click();
    void cmdDels_Click();
    void cmdS_Click();
    void cmdL_Click();
    void cmdR_Click();
    void cmdP_Click();
    void cmdImpExl_Click();
    void cmdExpTxt_Click();
    void cmdExpTxt_KeyPress(char32_t character);
    void cmdExport_Click();
    void cmdExit_Click();
    void cmdOK_Click();
    void cmdTr_Click();
    void cmdTr_KeyPress(char32_t character);
    void cmdCancel_Click();

    // The menus.
    void mnuNew_Click();
    void mnuOpen_Click();
    void mnuSaveas_Click();
    void mnuSave_Click();
    void mnuAppend_Click();
    void mnuX1_Click();
    void mnuX2_Click();
    void mnuX3_Click();
    void mnuX4_Click();
    void mnuExit_Click();
    void mnuSettings_Click();
    void mnuExport_Click();
    void mnuExcel_Click();
    void mnuImport_Click();
    void mnuSetPath_Click();
    void mnuPass_Click();
    void MnuHelp1_Click();
    void mnuAbout_Click();

    void mNu();
    void keepRecoveryCopy();
    std::chrono::milliseconds keepCopyAhead();
    void offerRecovery();
    void Dsb();
    void Enb();
    void showExportFrame(); ///< brings the panel and the eight buttons in step with the frame

    struct Held { // by the frames
        QAction* item;
        QList<QKeySequence> shortcuts;
        bool whole; // not only its shortcut
    };

    bool m_offersRecovery;
    std::string m_stateFolder;
    project::Book m_book;
    sheet::Journal m_journal{m_book};
    QtDesktop m_desktop;
    project::Recovery m_recovery{m_book, m_desktop};
    WindowMemory m_memory{*this, m_book.MSFG, m_stateFolder};
    QTimer m_keysRest; // runs out when nothing was typed for a second
    FlexGrid* m_grid = nullptr;
    ButtonColumn* m_column = nullptr;
    QScrollArea* m_columnScroll = nullptr;
    QProgressBar* m_pbr1 = nullptr;
    SettingsFrame* m_ff = nullptr;
    exchange::ExportFrame m_exportFrame;
    ExportPanel* m_fExport = nullptr;
    Panel* m_laid = nullptr; // by a part
    std::map<std::string, CommandButton*, std::less<>> m_buttons;
    std::array<QAction*, 4> m_mnuX{};
    QLabel* m_lblSide = nullptr;
    QLabel* m_lblHI = nullptr;
    QLabel* m_lblReading = nullptr;
    QLabel* m_lblRow = nullptr;
    HalfScreenRule m_halfScreen;
    int m_statusRow = 0;           ///< the row that the status bar was last about
    std::uint64_t m_keptAhead = 0; ///< steps made when the recovery copy was written with what redo does
    bool m_ended = false;
    std::vector<Held> m_items; // of the menus, as far as they have to do with the frames
    bool m_shortcutsHeld = false;
    std::vector<char> m_reserve; // memory for the net
    std::vector<std::unique_ptr<WindowPart>> m_parts;
};

} // namespace shell
