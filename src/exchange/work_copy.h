#pragma once

#include "desktop/desktop.h"
#include "files/replacement.h"

#include <optional>
#include <string>

namespace exchange {

/// The copy of the template "Rod.mdb" that a transfer fills, open as mdlTools::RoadDb. It lies in the program
/// folder under a name that is this process's alone and is locked, so that two transfers at once cannot
/// meet. Gone with this object, whatever happened to the transfer.
class WorkCopy {
  public:
    explicit WorkCopy(desktop::Desktop& desktop);
    WorkCopy(const WorkCopy&) = delete;
    WorkCopy& operator=(const WorkCopy&) = delete;
    ~WorkCopy();

    /// Copies the template and opens the database.
    void open();

    /// Writes the database to the file, which stays locked.
    void close();

    /// Makes `path` a copy of what was written. False, and nothing is changed, when something stands there.
    [[nodiscard]] bool placeAs(const std::string& path) const;

    /// Lets go of the database unwritten, if it is open, and deletes the copy. Does nothing the second time.
    void remove();

  private:
    desktop::Desktop& m_desktop;
    std::optional<files::Replacement> m_file; ///< never committed
};

} // namespace exchange
