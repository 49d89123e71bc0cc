#include "basic/numbers.h"
#include "entry/key_entry.h"
#include "sheet/book.h"
#include "sheet/journal.h"
#include "sheet/reduction.h"

#include "scripted_desktop.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

// Speed of what every command stands on: texts to numbers and back, the reduction, entry and paste.

namespace {

using namespace sheet;

// Sections of one centre and four side points, and a change point after every twentieth.
void fillBook(Book& book, int rows) {
    Grid& grid = book.MSFG;
    grid.setRows(rows + 1);
    grid.setText(1, RLevel, "100.000");
    grid.setText(1, BackSight, "1.525");
    for (int row = 2; row <= rows; ++row) {
        if (row % 100 == 0) {
            grid.setText(row, Chainage, "CP");
            grid.setText(row, ForeSight, "1.430");
            grid.setText(row, BackSight, "1.430");
            continue;
        }
        grid.setText(row, Chainage, "01-250");
        grid.setText(row, Left, "2.50");
        grid.setText(row, InterSight, basic::format(1.0 + row % 997 / 1000.0, basic::pattern("#0.000")));
    }
}

// The plain loop that the reduction is held against: it looks at the same texts and writes as many.
void walkTexts(Grid& grid) {
    for (int row = 2; row < grid.Rows(); ++row) {
        std::size_t held = grid.Text(row, InterSight).size() + grid.Text(row, ForeSight).size() +
                           grid.Text(row, Chainage).size();
        benchmark::DoNotOptimize(held);
        grid.setText(row, RLevel, "100.000");
    }
}

void perRow(benchmark::State& state, std::int64_t rows) {
    state.counters["per_row"] = benchmark::Counter(static_cast<double>(state.iterations() * rows),
                                                   benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_PlainLoop(benchmark::State& state) {
    Book book;
    fillBook(book, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        book.MSFG.setVisible(false);
        walkTexts(book.MSFG);
        book.MSFG.setVisible(true);
    }
    perRow(state, state.range(0));
}
BENCHMARK(BM_PlainLoop)->Arg(1000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

void BM_Reduction(benchmark::State& state) {
    struct Silent final : ScriptedDesktop {
        void setProgress(float) override {}
    } desktop;
    Book book;
    fillBook(book, static_cast<int>(state.range(0)));
    for (auto _ : state)
        reduceLevels(book, desktop);
    perRow(state, state.range(0));
}
BENCHMARK(BM_Reduction)->Arg(1000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

// The same with a history: the reduction as a step, and that step taken back.
void reduceWithHistory(benchmark::State& state, bool timesUndo) {
    Book book;
    Journal journal(book);
    fillBook(book, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        journal.clear();
        if (timesUndo) state.PauseTiming();
        journal.begin("Cal");
        benchmark::DoNotOptimize(reduce(book.MSFG));
        journal.end();
        (timesUndo ? state.ResumeTiming() : state.PauseTiming());
        journal.undo();
        if (!timesUndo) state.ResumeTiming();
    }
}
void BM_ReductionWithHistory(benchmark::State& state) {
    reduceWithHistory(state, false);
}
BENCHMARK(BM_ReductionWithHistory)->Arg(100'000)->Unit(benchmark::kMicrosecond);
void BM_UndoOfReduction(benchmark::State& state) {
    reduceWithHistory(state, true);
}
BENCHMARK(BM_UndoOfReduction)->Arg(100'000)->Unit(benchmark::kMicrosecond);

// A row put on top of a long book and taken out again.
void BM_InsertOnTop(benchmark::State& state) {
    Book book;
    fillBook(book, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        book.MSFG.insertRows(1, 1, Marks::Move);
        book.MSFG.removeRows(1, 1, Marks::Move);
    }
}
BENCHMARK(BM_InsertOnTop)->Arg(100'000)->Unit(benchmark::kMicrosecond);

std::vector<std::string> readings() {
    std::vector<std::string> texts;
    for (int i = 0; i < 1000; ++i)
        texts.push_back(basic::format(i * 1.237, basic::pattern("#0.000")));
    return texts;
}

template <double Parse(const std::string&)>
void BM_Parse(benchmark::State& state) {
    const std::vector<std::string> texts = readings();
    for (auto _ : state) {
        for (const std::string& text : texts)
            benchmark::DoNotOptimize(Parse(text));
    }
    perRow(state, std::ssize(texts));
}
double byVal(const std::string& text) {
    return basic::val(text);
}
double byStrtod(const std::string& text) {
    return std::strtod(text.c_str(), nullptr);
}
BENCHMARK(BM_Parse<byVal>);
BENCHMARK(BM_Parse<byStrtod>);

template <std::string Format(double)>
void BM_Format(benchmark::State& state) {
    std::vector<double> values;
    for (const std::string& text : readings())
        values.push_back(double{static_cast<float>(basic::val(text))});
    for (auto _ : state) {
        for (const double value : values)
            benchmark::DoNotOptimize(Format(value));
    }
    perRow(state, std::ssize(values));
}
std::string byPattern(double value) {
    return basic::format(value, basic::pattern("#0.000"));
}
std::string byPrintf(double value) {
    char text[64];
    const int size = std::snprintf(text, sizeof text, "%.3f", value);
    return {text, static_cast<std::size_t>(size)};
}
BENCHMARK(BM_Format<byPattern>);
BENCHMARK(BM_Format<byPrintf>);

// A reading keyed digit by digit and entered at the end of a long book; the row that Enter adds is dropped.
void BM_KeyAReading(benchmark::State& state) {
    ScriptedDesktop desktop;
    Book book;
    fillBook(book, 100'000);
    const int rows = book.MSFG.Rows();
    for (auto _ : state) {
        book.MSFG.setRows(rows);
        book.MSFG.moveTo(rows - 1, InterSight);
        book.MSFG.setText("");
        for (const char32_t key : {U'1', U'.', U'2', U'3', U'5', U'\r'})
            entry::keyPress(book, desktop, key);
    }
    perRow(state, 6);
}
BENCHMARK(BM_KeyAReading);

void BM_Paste(benchmark::State& state) {
    ScriptedDesktop desktop;
    std::string text;
    for (int line = 0; line < state.range(0); ++line)
        text += "01-250\t2.50\t\t\t\t1.235\t\t\t\tremark\r";
    desktop.clipboard = text;
    for (auto _ : state) {
        Book book;
        entry::keyPress(book, desktop, 22);
    }
    perRow(state, state.range(0));
}
BENCHMARK(BM_Paste)->Arg(5000)->Arg(50'000)->Unit(benchmark::kMillisecond);

} // namespace
