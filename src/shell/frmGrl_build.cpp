#include "frmGrl.h"

#include "button_column.h"
#include "controls/command_button.h"
#include "controls/flex_grid.h"
#include "export_panel.h"
#include "settings_frame.h"
#include "text.h"

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QPainter>
#include <QProgressBar>
#include <QScrollArea>
#include <QStatusBar>

#include <cstring>

// What stands in the window, laid out in tables: a row a control.

namespace shell {
namespace {

using Part = ButtonColumn::Part;

enum class Hover { FocusAndBold, Focus };

constexpr bool walksGrid = true;

/// A label that shortens its text to its width instead of widening the window.
class MessageLabel final : public QLabel {
  public:
    using QLabel::QLabel;

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, width());
        style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                              shown, foregroundRole());
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }
};

} // namespace

struct frmGrl::ButtonRow {
    const char* name;
    const char* caption;
    const char* tooltip;
    Handler click;
    Hover hover;
    int group;
    Part part;
    bool walks = false;
    const char* spoken = nullptr; ///< accessible name where the caption does not say it
};

const frmGrl::ButtonRow frmGrl::buttonTable[] = {
    {"cmdNew", "&New", "To Create New Project.", &frmGrl::cmdNew_Click, Hover::FocusAndBold, 0, Part::Half},
    {"cmdOpen", "&Open", "To Open Existing Project.", &frmGrl::cmdOpen_Click, Hover::FocusAndBold, 0,
     Part::Half},
    {"cmdSave", "&Save", "It Saves current Project", &frmGrl::cmdSave_Click, Hover::FocusAndBold, 0,
     Part::Whole, walksGrid},
    {"cmdCal", "&Cal", "To Calculates HI & RL's", &frmGrl::cmdCal_Click, Hover::FocusAndBold, 1, Part::Half,
     walksGrid, "Calculate"},
    {"cmdCP", "CP", "", &frmGrl::cmdCP_Click, Hover::FocusAndBold, 1, Part::Half, walksGrid, "Change points"},
    {"cmdList", "&Settings", "For Seting the chainage Increments & fixed Offsets", &frmGrl::cmdList_Click,
     Hover::FocusAndBold, 1, Part::Whole},
    {"cmdIns", "&Ins Row", "It Inserts Row above the Current row.", &frmGrl::cmdIns_Click,
     Hover::FocusAndBold, 2, Part::Wide, false, "Insert row"},
    {"cmdInss", "...", "It inserts Number of Rows above the Current Row", &frmGrl::cmdInss_Click,
     Hover::FocusAndBold, 2, Part::Narrow, false, "Insert rows"},
    {"cmdDel", "&Del Row", "It Delete Current Row.", &frmGrl::cmdDel_Click, Hover::FocusAndBold, 2,
     Part::Wide, false, "Delete row"},
    {"cmdDels", "...", "It Deletes Number of Rows from Current Row to below permanantly.",
     &frmGrl::cmdDels_Click, Hover::FocusAndBold, 2, Part::Narrow, false, "Delete rows"},
    {"cmdS", "* =>Next Chainage", "To set Next Chainage by given Chainage Increment.", &frmGrl::cmdS_Click,
     Hover::Focus, 3, Part::Whole, false, "Next chainage"},
    {"cmdL", "L =>Left Side", "To goto the LEFT side", &frmGrl::cmdL_Click, Hover::Focus, 3, Part::Whole,
     false, "Left side"},
    {"cmdR", "R =>Right Side", "To goto the RIGHT side", &frmGrl::cmdR_Click, Hover::Focus, 3, Part::Whole,
     false, "Right side"},
    {"cmdP", "P =>Change Point", "To Enter the CP (Change Point)", &frmGrl::cmdP_Click, Hover::Focus, 3,
     Part::Whole, false, "Change point"},
    {"cmdImpExl", "Import From Excel",
     "It Imports the Data from EXCEL(but excel sheet must be open and data must be in format.)",
     &frmGrl::cmdImpExl_Click, Hover::FocusAndBold, 4, Part::Whole},
    {"cmdExpTxt", "Export to CSV-File",
     "To create CSV files that directly open to EXCEL for Printing Purpose", &frmGrl::cmdExpTxt_Click,
     Hover::FocusAndBold, 4, Part::Whole, walksGrid},
    {"cmdExport", "Export to Zavro Road Software", "To Exports the Rls to Road Software.",
     &frmGrl::cmdExport_Click, Hover::FocusAndBold, 4, Part::Whole, walksGrid},
    {"cmdExit", "E&xit", "To Close the Software.", &frmGrl::cmdExit_Click, Hover::FocusAndBold, 5,
     Part::Whole},
};

struct frmGrl::MenuRow {
    const char* name;
    const char* caption;     ///< "-" for a separator
    Handler click = nullptr; ///< none: a menu of the bar, which holds the rows below it
    bool walks = false;
};

const frmGrl::MenuRow frmGrl::menuTable[] = {
    {"mnuFile", "&File"},
    {"mnuNew", "&New...", &frmGrl::mnuNew_Click},
    {"mnuOpen", "&Open...", &frmGrl::mnuOpen_Click},
    {"mnuSaveas", "Save &as...", &frmGrl::mnuSaveas_Click, walksGrid},
    {"mnuSave", "&Save", &frmGrl::mnuSave_Click, walksGrid},
    {"mnuAppend", "&Append File", &frmGrl::mnuAppend_Click},
    {"sep11", "-"},
    {"mnuX1", "x1", &frmGrl::mnuX1_Click},
    {"mnuX2", "x2", &frmGrl::mnuX2_Click},
    {"mnuX3", "x3", &frmGrl::mnuX3_Click},
    {"mnuX4", "x4", &frmGrl::mnuX4_Click},
    {"sep1", "-"},
    {"mnuExit", "E&xit", &frmGrl::mnuExit_Click},
    {"mnuTools", "&Tools"},
    {"mnuSettings", "&Settings", &frmGrl::mnuSettings_Click},
    {"mnuExport", "&Export to Road Soft.", &frmGrl::mnuExport_Click, walksGrid},
    {"mnuExcel", "Ex&port to Excel", &frmGrl::mnuExcel_Click, walksGrid},
    {"mnuImport", "&Import From Excel", &frmGrl::mnuImport_Click},
    {"sep3", "-"},
    {"mnuSetPath", "Set Path", &frmGrl::mnuSetPath_Click},
    {"sep2", "-"},
    {"mnuPass", "&Passward", &frmGrl::mnuPass_Click},
    {"MnuHelp", "&Help"},
    {"MnuHelp1", "&Help", &frmGrl::MnuHelp1_Click},
    {"mnuAbout", "&About", &frmGrl::mnuAbout_Click},
};

void frmGrl::buildButtons() {
    m_columnScroll = new QScrollArea(centralWidget());
    m_columnScroll->setFrameShape(QFrame::NoFrame);
    m_columnScroll->setWidgetResizable(true);
    m_columnScroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_columnScroll->setFocusPolicy(Qt::NoFocus);
    m_column = new ButtonColumn(nullptr);
    m_column->installEventFilter(this);
    for (const ButtonRow& row : buttonTable) {
        auto* control = new CommandButton(QLatin1String(row.name), text(row.caption), m_column);
        control->setToolTip(row.tooltip[0] == '\0' ? QString() : text(row.tooltip));
        control->setAccessibleDescription(control->toolTip());
        if (row.spoken != nullptr) control->setAccessibleName(text(row.spoken));
        control->mouseMove = [this, control, bold = row.hover == Hover::FocusAndBold] {
            MouseMove(*control, bold);
        };
        QObject::connect(control, &QPushButton::clicked, this, [this, &row] { run(row.click, row.walks); });
        m_column->add(control, row.group, row.part);
        m_buttons.emplace(row.name, control);
    }
    button("cmdImpExl").hide();
    button("cmdExpTxt").keyPress = [this](char32_t character) { cmdExpTxt_KeyPress(character); };
    m_columnScroll->setWidget(m_column);
}

void frmGrl::buildMenus() {
    QMenu* menu = nullptr;
    std::size_t recent = 0;
    for (const MenuRow& row : menuTable) {
        const QString name = QLatin1String(row.name);
        const bool isSeparator = std::strcmp(row.caption, "-") == 0;
        if (row.click == nullptr && !isSeparator) {
            menu = menuBar()->addMenu(text(row.caption));
            menu->setObjectName(name);
            menu->setToolTipsVisible(false);
            continue;
        }
        Q_ASSUME(menu != nullptr); // the table begins with a menu of the bar
        if (isSeparator) {
            menu->addSeparator()->setObjectName(name);
            continue;
        }
        QAction* item = menu->addAction(text(row.caption));
        item->setObjectName(name);
        item->setMenuRole(QAction::NoRole);
        QObject::connect(item, &QAction::triggered, this, [this, &row] { run(row.click, row.walks); });
        if (!name.startsWith(QLatin1String("mnuX")) || recent == m_mnuX.size()) continue;
        item->setVisible(false);
        m_mnuX[recent++] = item;
    }
}

void frmGrl::buildStatusBar() {
    // Their names are what they show, so that a screen reader tells it.
    const auto field = [this](const char* name, const char* meaning) {
        auto* label = new QLabel;
        label->setObjectName(QLatin1String(name));
        label->setAccessibleDescription(text(meaning));
        label->setContentsMargins(4, 0, 4, 0);
        statusBar()->addWidget(label);
        auto* line = new QFrame;
        line->setFrameStyle(int(QFrame::VLine) | int(QFrame::Plain));
        line->setForegroundRole(QPalette::Mid);
        statusBar()->addWidget(line);
        return label;
    };
    statusBar()->setSizeGripEnabled(false);
    m_lblSide = field("lblSide", "Side");
    m_lblHI = field("lblHI", "Height of instrument");
    m_lblReading = field("lblReading", "Last reading");
    m_lblRow = field("lblRow", "Row");
    auto* message = new MessageLabel;
    message->setObjectName(QStringLiteral("lblStatus"));
    message->setAccessibleDescription(text("Message"));
    message->setTextFormat(Qt::PlainText);
    statusBar()->addWidget(message, 1);
    m_desktop.attach(*m_pbr1, *message, *m_grid);
}

void frmGrl::buildFrames() {
    m_ff = new SettingsFrame(m_book, m_desktop, centralWidget());
    m_ff->cmdOK_Click = [this] { run(&frmGrl::cmdOK_Click, false); };
    m_fExport = new ExportPanel(m_exportFrame, m_desktop, centralWidget());
    m_fExport->cmdTr_Click = [this] { run(&frmGrl::cmdTr_Click, walksGrid); };
    m_fExport->cmdTr_KeyPress = [this](char32_t character) { cmdTr_KeyPress(character); };
    m_fExport->cmdCancel_Click = [this] { run(&frmGrl::cmdCancel_Click, false); };
}

void frmGrl::buildTabOrder() {
    QWidget* last = m_grid;
    for (const ButtonRow& row : buttonTable) {
        setTabOrder(last, &button(row.name));
        last = &button(row.name);
    }
}

} // namespace shell
