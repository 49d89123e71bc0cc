#pragma once

#include "../window_part.h"

namespace shell {

/// The menu Levels with its pane and the job heading, and in the menu View the findings with theirs. Both
/// panes follow the book; the status bar counts the findings.
std::unique_ptr<WindowPart> makeSurveyPanes(frmGrl& window);

} // namespace shell
