#include "shell/controls/flex_grid.h"
#include "shell/frmGrl.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <memory>
#include <vector>

// What the window costs with a long book: a key until it is painted, opening, scrolling. Without a display
// unless QT_QPA_PLATFORM names one.

namespace {

using Clock = std::chrono::steady_clock;

QApplication& application() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "window_bench";
    static char* argv[] = {name, nullptr};
    static QApplication instance(argc, argv);
    return instance;
}

/// The main window on a program folder of its own, with `rows` keyed rows.
struct Window {
    QTemporaryDir folder;
    std::unique_ptr<shell::frmGrl> form;

    explicit Window(int rows) {
        application();
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

    void fill(int rows) const {
        sheet::Grid& grid = book();
        grid.setVisible(false);
        grid.setRows(rows + 1);
        grid.setText(1, sheet::RLevel, "100");
        grid.setText(1, sheet::BackSight, "1.525");
        for (int row = 2; row <= rows; ++row) {
            grid.setText(row, sheet::Chainage, "01-250");
            grid.setText(row, row % 2 == 0 ? sheet::Left : sheet::Right, "2.50");
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

void reportQuantiles(benchmark::State& state, std::vector<double>& times) {
    if (times.empty()) return;
    std::sort(times.begin(), times.end());
    const auto at = [&](double share) { return times[std::size_t(double(times.size() - 1) * share)]; };
    state.counters["median_us"] = at(0.5);
    state.counters["p99_us"] = at(0.99);
    state.counters["worst_us"] = times.back();
}

template <typename Press>
void timeKeys(benchmark::State& state, Press press) {
    const Window window(int(state.range(0)));
    window.book().moveTo(int(state.range(0)) / 2, sheet::InterSight);
    window.form->showBook();
    QApplication::processEvents();
    std::vector<double> times;
    for (auto _ : state) {
        const auto start = Clock::now();
        press(window);
        times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    reportQuantiles(state, times);
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
        window.book().moveTo(window.book().Rows() - 1, sheet::InterSight);
        window.book().setText("1.235");
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
    std::vector<double> times;
    for (auto _ : state) {
        const auto start = Clock::now();
        bar.setValue(bar.value() == bar.maximum() ? 0 : bar.value() + bar.pageStep());
        QApplication::processEvents();
        times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    reportQuantiles(state, times);
}

BENCHMARK(BM_KeyToPaint)->Arg(1000)->Arg(100000)->Iterations(4000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ArrowToPaint)->Arg(100000)->Iterations(4000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_EnterToPaint)->Arg(1000)->Arg(100000)->Iterations(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_OpenWindow)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ScrollBook)->Arg(100000)->Iterations(2000)->Unit(benchmark::kMicrosecond);

} // namespace
