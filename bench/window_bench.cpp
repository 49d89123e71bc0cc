#include "shell/controls/flex_grid.h"
#include "shell/frmGrl.h"

#include <benchmark/benchmark.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <memory>
#include <vector>

// What the window costs with a long book: a key until it is painted, opening, scrolling. Without a display
// unless QT_QPA_PLATFORM names one.

namespace {

// The panes follow so many milliseconds after a key at the latest.
constexpr unsigned long untilPanesFollow = 25;

using Clock = std::chrono::steady_clock;

/// The main window on a program folder of its own, with `rows` keyed rows.
struct Window {
    QTemporaryDir folder;
    std::unique_ptr<shell::frmGrl> form;

    explicit Window(int rows) {
        shell::Surroundings surroundings;
        surroundings.programFolder = surroundings.templateFolder = folder.path().toStdString();
        surroundings.hasTrash = surroundings.offersRecovery = false;
        surroundings.endProgram = [] {};
        form = std::make_unique<shell::frmGrl>(surroundings);
        fill(rows);
        form->Form_Load();
        QApplication::processEvents();
    }

    [[nodiscard]] sheet::Grid& book() const { return form->book().MSFG; }

    /// The row's chainage and offset: three points a cross-section.
    static void place(sheet::Grid& grid, int row) {
        const int metres = row / 3 * 10;
        const std::string rest = std::to_string(1000 + metres % 1000).substr(1);
        grid.setText(row, sheet::Chainage, std::to_string(100 + metres / 1000) + '-' + rest);
        const int col = row % 3 == 0 ? sheet::Left : row % 3 == 1 ? sheet::Center : sheet::Right;
        grid.setText(row, col, col == sheet::Center ? "0" : "2.50");
    }

    void fill(int rows) const {
        sheet::Grid& grid = book();
        grid.setVisible(false);
        grid.setRows(rows + 1);
        grid.setText(1, sheet::RLevel, "100");
        grid.setText(1, sheet::BackSight, "1.525");
        for (int row = 2; row <= rows; ++row) {
            place(grid, row);
            grid.setText(row, sheet::InterSight, "1.235");
        }
        grid.setVisible(true);
    }

    /// Sends a key and comes back when the window is painted.
    void key(int code, const char* text) const {
        QKeyEvent press(QEvent::KeyPress, code, Qt::NoModifier, QString::fromLatin1(text));
        QApplication::sendEvent(&form->grid(), &press);
        QApplication::processEvents();
    }
};

/// Counts what the cells' area paints, so that a run that paints nothing does not pass for a fast one.
class Paints final : public QObject {
  public:
    explicit Paints(const Window& window) { window.form->grid().viewport()->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        m_count += event->type() == QEvent::Paint;
        return false;
    }
    void expect(benchmark::State& state) const {
        if (m_count < state.iterations()) state.SkipWithError("a step was not painted");
    }

  private:
    benchmark::IterationCount m_count = 0;
};

double threadMicroseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

/// Times of single steps, by the clock on the wall and by the processor's: on a busy machine they differ.
class Steps {
  public:
    template <typename Step>
    void time(Step step) {
        const auto start = Clock::now();
        const double processor = threadMicroseconds();
        step();
        m_processor.push_back(threadMicroseconds() - processor);
        m_wall.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    void report(benchmark::State& state) {
        state.counters["median_us"] = at(m_wall, 0.5);
        state.counters["p99_us"] = at(m_wall, 0.99);
        state.counters["cpu_median_us"] = at(m_processor, 0.5);
        state.counters["cpu_p99_us"] = at(m_processor, 0.99);
    }

  private:
    static double at(std::vector<double>& times, double share) {
        if (times.empty()) return 0;
        std::sort(times.begin(), times.end());
        return times[std::size_t(double(times.size() - 1) * share)];
    }

    std::vector<double> m_wall;
    std::vector<double> m_processor;
};

template <typename Press>
void timeKeys(benchmark::State& state, Press press) {
    const Window window(int(state.range(0)));
    window.book().moveTo(int(state.range(0)) / 2, sheet::InterSight);
    window.form->showBook();
    QApplication::processEvents();
    const Paints paints(window);
    Steps steps;
    for (auto _ : state)
        steps.time([&] { press(window); });
    paints.expect(state);
    steps.report(state);
}

/// A digit and its taking back in turn.
void BM_KeyToPaint(benchmark::State& state) {
    bool digit = false;
    timeKeys(state, [&digit](const Window& window) {
        digit = !digit;
        if (digit)
            window.key(Qt::Key_5, "5");
        else
            window.key(Qt::Key_Backspace, "\b");
    });
}

/// The levels that the readings give.
void fillLevels(sheet::Grid& grid) {
    for (int row = 2; row < grid.Rows(); ++row)
        grid.setText(row, sheet::RLevel, "100.290");
}

void choose(const Window& window, const char* item) {
    window.form->findChild<QAction*>(QLatin1String(item))->trigger();
}

/// A digit and its taking back on a road, with the panes of range(2) open: 1 both sections, 2 the list of
/// findings too. The panes are brought into step a moment after a key, which is part of its time here.
void BM_KeyWithPanesToPaint(benchmark::State& state) {
    const Window window(int(state.range(0)));
    sheet::Grid& grid = window.book();
    fillLevels(grid);
    if (state.range(2) > 0)
        for (const char* item : {"mnuLong", "mnuCross"})
            choose(window, item);
    if (state.range(2) > 1) choose(window, "mnuFindings");
    grid.moveTo(grid.Rows() / 2, int(state.range(1)));
    window.form->showBook();
    for (int turn = 0; turn < 20; ++turn)
        QApplication::processEvents(QEventLoop::AllEvents, 10);
    const Paints paints(window);
    Steps steps;
    bool digit = false;
    for (auto _ : state) {
        digit = !digit;
        steps.time([&] {
            window.key(digit ? Qt::Key_5 : Qt::Key_Backspace, digit ? "5" : "\b");
            QThread::msleep(untilPanesFollow);
            QApplication::processEvents();
        });
    }
    paints.expect(state);
    steps.report(state);
    state.SetLabel(window.form->findChild<QLabel*>(QStringLiteral("lblFindings"))->text().toStdString());
}

/// A reading keyed and confirmed, row after row: each Enter lets the row that was left be judged.
void BM_EnterWithPanesToPaint(benchmark::State& state) {
    const Window window(int(state.range(0)));
    sheet::Grid& grid = window.book();
    fillLevels(grid);
    window.form->book().Guarded = true; // Enter goes one row down
    if (state.range(1) > 0)
        for (const char* item : {"mnuLong", "mnuCross", "mnuFindings"})
            choose(window, item);
    grid.setText(1, sheet::HgtInst, "101.525");
    grid.moveTo(grid.Rows() / 2, sheet::InterSight);
    window.form->showBook();
    for (int turn = 0; turn < 20; ++turn)
        QApplication::processEvents(QEventLoop::AllEvents, 10);
    const Paints paints(window);
    Steps steps;
    for (auto _ : state)
        steps.time([&] {
            window.key(Qt::Key_Return, "\r");
            QThread::msleep(untilPanesFollow);
            QApplication::processEvents();
        });
    paints.expect(state);
    steps.report(state);
}

/// What follows an action a moment later is not part of its time.
void settle() {
    QThread::msleep(untilPanesFollow);
    QApplication::processEvents();
}

/// Del Row on the first row of the book, and taking it back.
void BM_DeleteRowAndUndo(benchmark::State& state) {
    const Window window(int(state.range(0)));
    auto* button = window.form->findChild<QAbstractButton*>(QStringLiteral("cmdDel"));
    Steps steps;
    for (auto _ : state) {
        window.book().moveTo(1, sheet::InterSight);
        settle();
        steps.time([&] {
            button->click();
            QApplication::processEvents();
            choose(window, "mnuUndo");
            QApplication::processEvents();
        });
        if (window.book().Rows() != state.range(0) + 1) state.SkipWithError("the row did not come back");
    }
    steps.report(state);
}

/// Taking back a Cal that wrote every level of the book; `core` without the window.
void BM_UndoOfCal(benchmark::State& state) {
    const Window window(int(state.range(0)));
    sheet::Journal& journal = window.form->journal();
    auto* button = window.form->findChild<QAbstractButton*>(QStringLiteral("cmdCal"));
    const bool core = state.range(1) != 0;
    Steps steps;
    for (auto _ : state) {
        if (journal.redoSteps() > 0)
            choose(window, "mnuRedo");
        else
            button->click();
        settle();
        steps.time([&] {
            if (core) return void(journal.undo());
            choose(window, "mnuUndo");
            QApplication::processEvents();
        });
        if (!window.book().Text(2, sheet::RLevel).empty()) state.SkipWithError("Cal was not taken back");
    }
    steps.report(state);
}

/// What the history holds after `rows` readings keyed one after the other.
void BM_HistoryOfKeyedRows(benchmark::State& state) {
    std::size_t bytes = 0;
    for (auto _ : state) {
        const Window window(2);
        window.book().moveTo(2, sheet::InterSight);
        window.form->journal().clear();
        for (int row = 0; row < state.range(0); ++row) {
            window.book().setCol(sheet::InterSight);
            for (const char* digit : {"1", ".", "2", "3", "5"})
                window.key(*digit == '.' ? Qt::Key_Period : Qt::Key_0 + *digit - '0', digit);
            window.key(Qt::Key_Return, "\r");
        }
        bytes = window.form->journal().bytes();
    }
    state.counters["history_KB"] = double(bytes) / 1024;
}

void BM_ArrowToPaint(benchmark::State& state) {
    bool down = false;
    timeKeys(state, [&down](const Window& window) {
        down = !down;
        window.key(down ? Qt::Key_Down : Qt::Key_Up, "");
    });
}

/// Enter on a reading: the reduced level, a new row at the end of the book, and the view scrolled to it.
void BM_EnterToPaint(benchmark::State& state) {
    timeKeys(state, [](const Window& window) {
        sheet::Grid& grid = window.book();
        const int row = grid.Rows() - 1;
        grid.moveTo(row, sheet::InterSight);
        Window::place(grid, row);
        grid.setText("1.235");
        window.key(Qt::Key_Return, "\r");
    });
}

void BM_OpenWindow(benchmark::State& state) {
    for (auto _ : state)
        Window(int(state.range(0)));
}

/// Scrolls through the whole book, a screenful a step.
void BM_ScrollBook(benchmark::State& state) {
    const Window window(int(state.range(0)));
    QScrollBar& bar = *window.form->grid().verticalScrollBar();
    const Paints paints(window);
    Steps steps;
    for (auto _ : state) {
        steps.time([&] {
            bar.setValue(bar.value() == bar.maximum() ? 0 : bar.value() + bar.pageStep());
            QApplication::processEvents();
        });
    }
    paints.expect(state);
    steps.report(state);
}

BENCHMARK(BM_KeyToPaint)->Arg(1000)->Arg(100000)->Iterations(4000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_KeyWithPanesToPaint)
    ->ArgsProduct({{100000}, {sheet::InterSight, sheet::RLevel}, {0, 1, 2}})
    ->Iterations(1000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_EnterWithPanesToPaint)
    ->ArgsProduct({{100000}, {0, 1}})
    ->Iterations(1000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DeleteRowAndUndo)->Arg(100000)->Iterations(50)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_UndoOfCal)->ArgsProduct({{100000}, {0, 1}})->Iterations(20)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_HistoryOfKeyedRows)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ArrowToPaint)->Arg(100000)->Iterations(4000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_EnterToPaint)->Arg(1000)->Arg(100000)->Iterations(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_OpenWindow)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ScrollBook)->Arg(100000)->Iterations(2000)->Unit(benchmark::kMicrosecond);

} // namespace
