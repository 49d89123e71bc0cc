#include "basic/numbers.h"
#include "sheet/book.h"
#include "sheet/reduction.h"
#include "survey/findings.h"
#include "survey/sections.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <vector>

// What the room beside the reduction costs: sections and adjustment of a whole book against the reduction of
// the same book, findings from nothing, and one key with all of it following.

namespace {

using namespace survey;

// Sections of one centre and four side points on hilly ground, a change point after every fourth section and
// a known level every 5,000 rows.
void fillBook(sheet::Book& book, int rows) {
    sheet::Grid& grid = book.MSFG;
    grid.setRows(rows + 1);
    grid.setText(1, sheet::RLevel, "100.000");
    grid.setText(1, sheet::BackSight, "1.525");
    constexpr std::array columns{sheet::Center, sheet::Left, sheet::Left, sheet::Right, sheet::Right};
    constexpr std::array offsets{"0", "2.50", "5.00", "2.50", "5.00"};
    int section = 0;
    int point = 0;
    for (int row = 2; row <= rows; ++row) {
        if (row % 21 == 0) {
            grid.setText(row, sheet::Chainage, "CP");
            grid.setText(row, sheet::ForeSight, "1.430");
            if (row < rows) grid.setText(row, sheet::BackSight, "1.430");
            if (row % 5040 == 0) grid.setText(row, sheet::Remark, "BM" + std::to_string(row) + " = 100.095");
            continue;
        }
        const int metres = section * 10;
        const std::string tail = std::to_string(1000 + metres % 1000).substr(1);
        grid.setText(row, sheet::Chainage,
                     (metres < 10000 ? "0" : "") + std::to_string(metres / 1000) + "-" + tail);
        grid.setText(row, columns[static_cast<std::size_t>(point)], offsets[static_cast<std::size_t>(point)]);
        const double ground = 0.2 * ((section * 7919) % 31) / 31 + 0.03 * ((row * 104729) % 17) / 17;
        grid.setText(row, sheet::InterSight, basic::format(1.2 + ground, basic::pattern("#0.000")));
        if (++point < 5) continue;
        point = 0;
        ++section;
    }
}

// Of this thread alone: on a busy machine the time that passes says little about single keys.
double cpuMicroseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

void BM_Reduction(benchmark::State& state) {
    sheet::Book book;
    fillBook(book, static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(sheet::reduce(book.MSFG));
}
BENCHMARK(BM_Reduction)->Arg(100'000)->Unit(benchmark::kMillisecond);

void BM_SectionsAndAdjustment(benchmark::State& state) {
    sheet::Book book;
    fillBook(book, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        Runs runs(book.MSFG);
        double sum = static_cast<double>(runs.sections().size());
        for (int row = 1; row < book.MSFG.Rows(); ++row)
            if (const auto level = runs.levelAt(row)) sum += level->adjusted();
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_SectionsAndAdjustment)->Arg(100'000)->Unit(benchmark::kMillisecond);

void BM_FindingsFromNothing(benchmark::State& state) {
    sheet::Book book;
    fillBook(book, static_cast<int>(state.range(0)));
    std::size_t found = 0;
    for (auto _ : state) {
        Runs runs(book.MSFG);
        Findings findings(book.MSFG, runs, Findings::Cursor::Ignore);
        found = findings.all().size();
    }
    state.counters["found"] = static_cast<double>(found);
}
BENCHMARK(BM_FindingsFromNothing)->Arg(100'000)->Unit(benchmark::kMillisecond);

// A reading keyed anew in the middle of the book, character by character, then the next row: with runs,
// findings and sections brought into step after every key, as the window does at most.
void BM_KeyFollowed(benchmark::State& state) {
    sheet::Book book;
    sheet::Grid& grid = book.MSFG;
    fillBook(book, static_cast<int>(state.range(0)));
    sheet::reduce(grid);
    Runs runs(grid);
    Findings findings(grid, runs, Findings::Cursor::Follow);
    Sections sections(grid);
    for (sheet::GridListener* each :
         {static_cast<sheet::GridListener*>(&runs), static_cast<sheet::GridListener*>(&findings),
          static_cast<sheet::GridListener*>(&sections)})
        grid.addListener(*each);
    const auto follow = [&](int row) {
        benchmark::DoNotOptimize(findings.version() + sections.version() + runs.sections().size());
        benchmark::DoNotOptimize(runs.levelAt(row));
    };
    follow(1);
    std::vector<double> times;
    int row = grid.Rows() / 2;
    for (auto _ : state) {
        row = row + 1 < grid.Rows() ? row + 1 : 2;
        grid.moveTo(row, sheet::InterSight);
        const bool turn = grid.Text(row, sheet::InterSight).empty();
        for (const char* text : {"1", "1.", "1.2", "1.25"}) {
            const double begin = cpuMicroseconds();
            grid.setText(row, turn ? sheet::ForeSight : sheet::InterSight, text);
            follow(row);
            times.push_back(cpuMicroseconds() - begin);
        }
    }
    std::ranges::sort(times);
    state.counters["p50_us"] = times[times.size() / 2];
    state.counters["p99_us"] = times[times.size() * 99 / 100];
}
BENCHMARK(BM_KeyFollowed)->Arg(1000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

} // namespace
