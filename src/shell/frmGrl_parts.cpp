#include "frmGrl.h"

#include "edit_items.h"
#include "find_bar.h"
#include "guarded_item.h"
#include "import_panel.h"
#include "letters_items.h"
#include "levels/survey_panes.h"
#include "notice_line.h"
#include "print/print_items.h"
#include "section_panes.h"
#include "undo_items.h"
#include "window_part.h"

// The parts that the window is made of besides buttons, laid-down menus, frames and grid: a row a part, in
// the order in which their menus and items are added.

namespace shell {
namespace {

const std::vector<MakePart> partTable{
    &makeEditMenu,     &makeUndoItems,   &makeEditItems,    &makeFindBar,
    &makeGuardedItem,  &makeContextMenu, &makeSectionPanes, &makeSurveyPanes,
    &makeLettersItems, &makeImportPanel, &makePrintItems,   &makeNoticeLine,
};

} // namespace

void frmGrl::buildParts() {
    for (const MakePart make : partTable)
        m_parts.push_back(make(*this));
}

} // namespace shell
