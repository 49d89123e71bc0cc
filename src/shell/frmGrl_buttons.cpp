#include "frmGrl.h"

#include "button_column.h"
#include "controls/command_button.h"
#include "controls/flex_grid.h"
#include "text.h"

#include <QScrollArea>

// The column of buttons: a row a button.

namespace shell {
namespace {

using Part = ButtonColumn::Part;

enum class Hover { FocusAndBold, Focus };

constexpr bool walksGrid = true;
constexpr bool heldByFrames = true;

} // namespace

struct frmGrl::ButtonRow {
    const char* name;
    const char* caption;
    const char* tooltip;
    Handler click;
    Hover hover;
    int group;
    Part part;
    Action action;
    const char* spoken = nullptr; ///< accessible name where the caption does not say it
};

const frmGrl::ButtonRow frmGrl::buttonTable[] = {
    {"cmdNew",
     "&New",
     "To Create New Project.",
     &frmGrl::cmdNew_Click,
     Hover::FocusAndBold,
     0,
     Part::Half,
     {"New"}},
    {"cmdOpen",
     "&Open",
     "To Open Existing Project.",
     &frmGrl::cmdOpen_Click,
     Hover::FocusAndBold,
     0,
     Part::Half,
     {"Open"}},
    {"cmdSave",
     "&Save",
     "It Saves current Project",
     &frmGrl::cmdSave_Click,
     Hover::FocusAndBold,
     0,
     Part::Whole,
     {"Save", walksGrid}},
    {"cmdCal",
     "&Cal",
     "To Calculates HI & RL's",
     &frmGrl::cmdCal_Click,
     Hover::FocusAndBold,
     1,
     Part::Half,
     {"Cal", walksGrid},
     "Calculate"},
    {"cmdCP",
     "CP",
     "",
     &frmGrl::cmdCP_Click,
     Hover::FocusAndBold,
     1,
     Part::Half,
     {"CP", walksGrid},
     "Change points"},
    {"cmdList",
     "&Settings",
     "For Seting the chainage Increments & fixed Offsets",
     &frmGrl::cmdList_Click,
     Hover::FocusAndBold,
     1,
     Part::Whole,
     {"Settings"}},
    {"cmdIns",
     "&Ins Row",
     "It Inserts Row above the Current row.",
     &frmGrl::cmdIns_Click,
     Hover::FocusAndBold,
     2,
     Part::Wide,
     {"Ins Row", false, heldByFrames},
     "Insert row"},
    {"cmdInss",
     "...",
     "It inserts Number of Rows above the Current Row",
     &frmGrl::cmdInss_Click,
     Hover::FocusAndBold,
     2,
     Part::Narrow,
     {"Ins Rows", false, heldByFrames},
     "Insert rows"},
    {"cmdDel",
     "&Del Row",
     "It Delete Current Row.",
     &frmGrl::cmdDel_Click,
     Hover::FocusAndBold,
     2,
     Part::Wide,
     {"Del Row", false, heldByFrames},
     "Delete row"},
    {"cmdDels",
     "...",
     "It Deletes Number of Rows from Current Row to below permanantly.",
     &frmGrl::cmdDels_Click,
     Hover::FocusAndBold,
     2,
     Part::Narrow,
     {"Del Rows", false, heldByFrames},
     "Delete rows"},
    {"cmdS",
     "* =>Next Chainage",
     "To set Next Chainage by given Chainage Increment.",
     &frmGrl::cmdS_Click,
     Hover::Focus,
     3,
     Part::Whole,
     {"Next Chainage"},
     "Next chainage"},
    {"cmdL",
     "L =>Left Side",
     "To goto the LEFT side",
     &frmGrl::cmdL_Click,
     Hover::Focus,
     3,
     Part::Whole,
     {"Left Side"},
     "Left side"},
    {"cmdR",
     "R =>Right Side",
     "To goto the RIGHT side",
     &frmGrl::cmdR_Click,
     Hover::Focus,
     3,
     Part::Whole,
     {"Right Side"},
     "Right side"},
    {"cmdP",
     "P =>Change Point",
     "To Enter the CP (Change Point)",
     &frmGrl::cmdP_Click,
     Hover::Focus,
     3,
     Part::Whole,
     {"Change Point"},
     "Change point"},
    {"cmdImpExl",
     "Import From Excel",
     "It Imports the Data from EXCEL(but excel sheet must be open and data must be in format.)",
     &frmGrl::cmdImpExl_Click,
     Hover::FocusAndBold,
     4,
     Part::Whole,
     {"Import"}},
    {"cmdExpTxt",
     "Export to CSV-File",
     "To create CSV files that directly open to EXCEL for Printing Purpose",
     &frmGrl::cmdExpTxt_Click,
     Hover::FocusAndBold,
     4,
     Part::Whole,
     {"Export to CSV-File", walksGrid}},
    {"cmdExport",
     "Export to Zavro Road Software",
     "To Exports the Rls to Road Software.",
     &frmGrl::cmdExport_Click,
     Hover::FocusAndBold,
     4,
     Part::Whole,
     {"Export", walksGrid}},
    {"cmdExit",
     "E&xit",
     "To Close the Software.",
     &frmGrl::cmdExit_Click,
     Hover::FocusAndBold,
     5,
     Part::Whole,
     {"Exit"}},
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
        QObject::connect(control, &QPushButton::clicked, this, [this, control, &row] {
            run(row.action, row.click);
            // An access key is typed with the mind on the grid.
            if (control->takeAccessKey() && control->hasFocus()) m_desktop.focusGrid();
        });
        control->keyPress = [this](char32_t character) { typeOnButton(character); };
        m_column->add(control, row.group, row.part);
        m_buttons.emplace(row.name, control);
    }
    button("cmdImpExl").hide();
    button("cmdExpTxt").keyPress = [this](char32_t character) {
        cmdExpTxt_KeyPress(character);
        typeOnButton(character);
    };
    m_columnScroll->setWidget(m_column);
}

void frmGrl::buildTabOrder() {
    QWidget* last = m_grid;
    for (const ButtonRow& row : buttonTable) {
        setTabOrder(last, &button(row.name));
        last = &button(row.name);
    }
}

} // namespace shell
