#pragma once

#include "survey/runs.h"

#include <QTimer>
#include <QWidget>

#include <functional>

class QComboBox;
class QLabel;
class QSplitter;
class QTableView;

namespace shell {

class RowLevelModel;
class SectionModel;

/// The pane of the level runs: how they are judged, their sections, and the levels of the rows that the grid
/// shows.
class LevelsPane final : public QWidget {
  public:
    LevelsPane(const sheet::Grid& grid, survey::Runs& runs);

    std::function<void(int row)> chosen;  ///< a section was clicked
    std::function<void()> closingChanged; ///< the user judges or adjusts otherwise

    void setRiseAndFall(bool shown);
    [[nodiscard]] bool riseAndFall() const { return m_riseAndFall; }
    void showClosing(); ///< brings the boxes in step with the runs
    /// Brings the tables in step with the book; the grid shows these rows.
    void follow(int firstRow, int lastRow);
    [[nodiscard]] QSize sizeHint() const override; ///< leaves the grid most of the height

  private:
    QWidget* buildChoices();
    QTableView* makeTable(const char* name, const char* spoken);
    void changeClosing(const std::function<void(survey::Closing&)>& change);
    void takeRule();
    void showCheck();

    const sheet::Grid& m_grid;
    survey::Runs& m_runs;
    SectionModel* m_sections;
    RowLevelModel* m_levels;
    QComboBox* m_class = nullptr;
    QComboBox* m_method = nullptr;
    QLabel* m_verdict = nullptr;
    QTimer m_rest; // the check by rises and falls walks over the book, so it waits for the keys to rest
    std::size_t m_checked = 0;
    bool m_riseAndFall = false;
};

} // namespace shell
