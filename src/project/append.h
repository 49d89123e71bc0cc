#pragma once

#include "project_commands.h"

namespace project {

/// Adds the rows of a second project file below the last row of the book. Renumbers and reduces nothing.
Outcome appendProject(Book& book, desktop::Desktop& desktop);

} // namespace project
