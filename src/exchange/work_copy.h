#pragma once

#include "desktop/desktop.h"

#include <string>

namespace exchange {

/// "Rodd.mdb" in the program folder: the copy of the template that a transfer fills, open as
/// mdlTools::RoadDb. Gone with this object, whatever happened to the transfer.
class WorkCopy {
  public:
    explicit WorkCopy(desktop::Desktop& desktop);
    WorkCopy(const WorkCopy&) = delete;
    WorkCopy& operator=(const WorkCopy&) = delete;
    ~WorkCopy() { remove(); }

    /// Copies the template over an older copy and opens the database. A copy that another instance has open
    /// stays its own: 3045.
    void open();

    /// Writes the database to the file and lets go of it.
    void close();

    /// Lets go of the database unwritten, if it is open, and deletes the copy. Does nothing the second time.
    void remove();

    [[nodiscard]] const std::string& path() const { return m_path; }

  private:
    desktop::Desktop& m_desktop;
    std::string m_path;
    bool m_ours = false;
};

} // namespace exchange
