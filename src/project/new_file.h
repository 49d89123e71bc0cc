#pragma once

#include "desktop/desktop.h"

#include "files/replacement.h"

#include <string>
#include <string_view>

namespace project {

/// The extension rule of chosen names: "x.txt" becomes "x.grl", "road" becomes "roadgrl" (without a point), a
/// name that ends in ".grl" in any letter case is kept.
[[nodiscard]] std::string fixExtension(std::string path);

/// A project file in the making: a copy of the template beside the place that it is for. It takes that place
/// as a whole or not at all; without commit nothing is left.
class NewFile {
  public:
    /// Raises what a copy of the template to `target` would: 53 no template, 70 no permission or a target
    /// that is read-only, 75 a folder, 76 no such folder, 61 disk full.
    NewFile(desktop::Desktop& desktop, std::string_view target);

    /// Where it stands until commit; a database that is written there takes its place.
    [[nodiscard]] std::string path() const { return m_file.siblingPath(); }

    /// Renames it to its target. A file that stands there goes to the desktop's trash before, where there is
    /// one; true then.
    bool commit(desktop::Desktop& desktop);

  private:
    files::Replacement m_file;
};

} // namespace project
