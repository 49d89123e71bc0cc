// The transfer end to end, as Transfer in the export frame runs it: save, fill the road database (11 readings
// a chainage), lay out the project folder. Beside it what the save alone takes, and the same book sent as
// formation levels into the road that was made.

#include "exchange/formation_levels.h"
#include "exchange/marked_rows.h"
#include "exchange/transfer.h"
#include "project/save.h"
#include "tools/road_tables.h"

#include "scripted_desktop.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <stdexcept>
#include <stdlib.h>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr int readingsAChainage = 11;

std::string chainageText(int metres) {
    const auto padded = [](int number, std::size_t digits) {
        const std::string text = std::to_string(number);
        return std::string(text.size() < digits ? digits - text.size() : 0, '0') + text;
    };
    return padded(metres / 1000, 2) + "-" + padded(metres % 1000, 3);
}

/// A home with the templates, and a book of `readings` rows with its project file.
struct Setting {
    explicit Setting(int readings) {
        std::string form = (fs::temp_directory_path() / "zavrogrl-bench-XXXXXX").string();
        if (mkdtemp(form.data()) == nullptr) throw std::runtime_error("no temporary folder");
        home = form;
        setenv("HOME", home.c_str(), 1);
        fs::copy(BENCH_TEMPLATES, home / "app");
        fs::create_directory(home / "roads");
        desktop.folder = home / "app";
        fs::copy_file(home / "app/grl.mdb", home / "Site1.grl");
        book.setProjectPath((home / "Site1.grl").string());
        book.DefaultFolder = home / "roads";
        mdlTools::InitLSectFieldTable();
        keyBook(readings);
    }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;
    ~Setting() {
        std::error_code ignored;
        fs::remove_all(home, ignored);
    }

    void keyBook(int readings) {
        sheet::Grid& grid = book.MSFG;
        grid.setRows(readings + 1);
        for (int row = 1; row <= readings; ++row) {
            const int point = (row - 1) % readingsAChainage - readingsAChainage / 2;
            const int col = point < 0 ? sheet::Left : point == 0 ? sheet::Center : sheet::Right;
            grid.setText(row, sheet::Chainage, chainageText((row - 1) / readingsAChainage * 10));
            grid.setText(row, col, std::to_string(point < 0 ? -point : point) + ".25");
            grid.setText(row, sheet::InterSight, "1.525");
            grid.setText(row, sheet::RLevel, "100.475");
        }
    }

    void transfer() {
        frame.Dsb();
        desktop.boxes.clear();
        desktop.progress.clear();
        if (exchange::transfer(book, desktop, frame) != exchange::TransferEnd::Done)
            throw std::runtime_error(desktop.boxes.empty() ? "not transferred" : desktop.boxes.back().text);
    }

    fs::path home;
    ScriptedDesktop desktop;
    project::Book book;
    exchange::ExportFrame frame;
};

/// The cursor comes to a marked row, the last one of many that repeat each other.
void whyMarked(benchmark::State& state) {
    const int rows = static_cast<int>(state.range(0));
    Setting setting(rows);
    sheet::Grid& grid = setting.book.MSFG;
    for (int row = 1; row <= rows; ++row)
        grid.setCellBackColor(row, sheet::Chainage, sheet::dataError);
    grid.moveTo(rows, sheet::Chainage);
    for (auto _ : state)
        exchange::tellMarkedRow(grid, setting.desktop);
    state.SetLabel(setting.desktop.statuses.back());
}
BENCHMARK(whyMarked)->Arg(21'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

void transfer(benchmark::State& state) {
    Setting setting(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        setting.transfer();
        state.PauseTiming();
        fs::remove_all(setting.home / "roads/Site1");
        state.ResumeTiming();
    }
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void saveAlone(benchmark::State& state) {
    Setting setting(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        setting.desktop.progress.clear();
        project::saveProject(setting.book, setting.desktop);
    }
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void formationLevels(benchmark::State& state) {
    Setting setting(static_cast<int>(state.range(0)));
    setting.transfer();
    setting.frame.lblProj = setting.home / "roads/Site1/Road.mdb";
    for (auto _ : state)
        if (!exchange::CFrl(setting.book, setting.desktop, setting.frame)) state.SkipWithError("not sent");
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

#define SIZES RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity()
BENCHMARK(transfer)->SIZES;
BENCHMARK(saveAlone)->SIZES;
BENCHMARK(formationLevels)->SIZES;

} // namespace
