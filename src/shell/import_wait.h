#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>

#include <cstddef>
#include <optional>

namespace shell {

/// Keeps the window alive while a spreadsheet is read, and offers to give up once that takes longer than a
/// moment.
class ImportWait {
  public:
    /// `title` and `waiting` are what the box says until rows come.
    explicit ImportWait(QWidget& window, const char* title = "Import From Excel",
                        const char* waiting = "Waiting for the spreadsheet program...");

    /// Paints what is due; false when the user has given up.
    [[nodiscard]] bool goOn(std::size_t rowsRead);

  private:
    QWidget& m_window;
    const char* m_title;
    const char* m_waiting;
    QElapsedTimer m_since;
    std::optional<QProgressDialog> m_box;
};

} // namespace shell
