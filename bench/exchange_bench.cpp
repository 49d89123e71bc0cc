// What the exchange with spreadsheets costs: a sheet of a running LibreOffice taken into the grid, and the
// book written as CSV beside a plain write of the same bytes.

#include "running_office.h"
#include "scripted_desktop.h"

#include "basic/files.h"
#include "exchange/csv_export.h"
#include "exchange/sheet_import.h"
#include "spreadsheet/libre_office.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>

namespace {

constexpr int sheetRows = 5000;

/// Desktop of a command that nobody watches.
class Quiet : public ScriptedDesktop {
  public:
    void setProgress(float) override {}
    desktop::Answer messageBox(std::string_view, desktop::Buttons, std::string_view) override {
        return desktop::Answer::Ok;
    }
};

void fill(sheet::Grid& grid, int rows) {
    grid.setRows(rows + 1);
    for (int row = 1; row <= rows; ++row) {
        grid.setText(row, sheet::Chainage,
                     "0" + std::to_string(row % 10) + "-" + std::to_string(100 + row % 900));
        grid.setText(row, row % 3 + 1, "2.50");
        grid.setText(row, sheet::InterSight, "1.235");
        grid.setText(row, sheet::RLevel, "101.375");
        if (row % 10 == 0) grid.setText(row, sheet::Remark, "edge of the road");
    }
}

/// Folder and book for the CSV benchmarks.
struct CsvCase {
    std::filesystem::path folder;
    project::Book book;

    CsvCase() {
        std::string form = (std::filesystem::temp_directory_path() / "zavrogrl-bench-XXXXXX").string();
        if (mkdtemp(form.data()) == nullptr) throw std::runtime_error("no temporary folder");
        folder = form;
        book.setProjectPath((folder / "Site1.grl").string());
    }
    CsvCase(const CsvCase&) = delete;
    CsvCase& operator=(const CsvCase&) = delete;
    ~CsvCase() { std::filesystem::remove_all(folder); }
};

void BM_CsvOfTheBook(benchmark::State& state) {
    CsvCase c;
    fill(c.book.MSFG, static_cast<int>(state.range(0)));
    Quiet desktop;
    for (auto _ : state)
        exchange::exportCsv(c.book, desktop);
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(std::filesystem::file_size(c.folder / "Site1.csv")));
}
BENCHMARK(BM_CsvOfTheBook)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();

enum class Sync : bool { No, Yes };

void BM_PlainWrite(benchmark::State& state, Sync sync) {
    CsvCase c;
    fill(c.book.MSFG, static_cast<int>(state.range(0)));
    const std::string text = exchange::csvText(c.book.MSFG);
    const std::string path = (c.folder / "plain.csv").string();
    for (auto _ : state) {
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
        if (write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
            state.SkipWithError("write");
        if (sync == Sync::Yes && fsync(file) != 0) state.SkipWithError("fsync");
        close(file);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK_CAPTURE(BM_PlainWrite, unsynced, Sync::No)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(BM_PlainWrite, synced, Sync::Yes)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void BM_ImportFromLibreOffice(benchmark::State& state) {
    if (!RunningOffice::isInstalled() || !std::filesystem::exists(SHEET_READER)) {
        state.SkipWithError("LibreOffice or its development files are not installed");
        return;
    }
    RunningOffice office;
    project::Book source;
    fill(source.MSFG, sheetRows);
    office.start({office.convert(office.write("book.csv", exchange::csvText(source.MSFG)), "xlsx")});
    spreadsheet::LibreOffice program({SHEET_READER, std::vector{office.socket()}});
    Quiet desktop;
    desktop.folder = office.path(".");
    project::Book book;
    const auto run = [&] { exchange::importSheet(book, desktop, [&] { return program.readSheet({}); }); };
    const bool loaded = RunningOffice::waitUntil([&] {
        run();
        return book.MSFG.Rows() == sheetRows + 3;
    });
    if (!loaded) state.SkipWithError("the workbook was not loaded");
    for (auto _ : state)
        run();
    state.SetItemsProcessed(state.iterations() * sheetRows);
}
BENCHMARK(BM_ImportFromLibreOffice)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20);

} // namespace
