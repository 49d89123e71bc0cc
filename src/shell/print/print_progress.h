#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>

#include <chrono>

namespace shell {

/// Shows how far a long print is, with Cancel, once it has taken a while.
class PrintProgress {
  public:
    static constexpr std::chrono::milliseconds untilShown{1000};

    PrintProgress(int pages, QWidget* parent, std::chrono::milliseconds until = untilShown);
    /// To be told after each page; false once the user has cancelled.
    bool goOn(int done);

  private:
    QProgressDialog m_dialog;
    QElapsedTimer m_clock;
    std::chrono::milliseconds m_until;
};

} // namespace shell
