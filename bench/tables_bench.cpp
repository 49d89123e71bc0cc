// What an import costs: a workbook of 10,000 rows from the click to the end of its preview, beside a headless
// LibreOffice that converts the same file, and the file of a digital level.

#include "running_office.h"

#include "exchange/digital_levels.h"
#include "exchange/table_import.h"
#include "tables/table_file.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <map>

namespace {

constexpr int bookRows = 10'000;
constexpr int blocks = 100'000;

std::string bookText() {
    std::string text =
        "Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark\n,,,,1.525,,,,100,BM 1\n";
    std::array<char, 96> line{};
    for (int row = 1; row < bookRows; ++row) {
        const int metres = row * 10;
        std::snprintf(line.data(), line.size(), "%02d-%03d,%s,%s,,,%.3f,,,%.3f,%s\n", metres / 1000,
                      metres % 1000, row % 2 != 0 ? "2.50" : "", row % 2 != 0 ? "" : "0",
                      1.2 + row % 700 / 1000.0, 100 + row % 900 / 1000.0,
                      row % 10 == 0 ? "edge of the road" : "");
        text += line.data();
    }
    return text;
}

/// The same book as .xlsx and .ods, both by LibreOffice, and what a conversion of each takes it.
class Workbooks {
  public:
    static Workbooks& get() {
        static Workbooks books;
        return books;
    }
    [[nodiscard]] std::string path(const std::string& format) const {
        return m_office.path("book." + format);
    }
    std::map<std::string, double> seconds; ///< of LibreOffice, by format

    /// Back into text, in a process of its own, as a script does it.
    void convert(const std::string& format) const {
        const std::string command = "env -i PATH=/usr/bin:/bin LANG=C.UTF-8 HOME=" + m_office.path(".") +
                                    " soffice -env:UserInstallation=file://" + m_office.path("profile") +
                                    " --headless --convert-to csv --outdir " + m_office.path("out") + " " +
                                    path(format) + " >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0) throw std::runtime_error("LibreOffice does not convert");
    }

  private:
    Workbooks() {
        for (const char* format : {"xlsx", "ods"})
            m_office.convert(m_office.write("book.csv", bookText()), format);
    }
    RunningOffice m_office;
};

void BM_LibreOfficeConverts(benchmark::State& state, const std::string& format) {
    if (!RunningOffice::isInstalled()) return state.SkipWithError("LibreOffice is not installed");
    Workbooks& books = Workbooks::get();
    double least = 1e9;
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        books.convert(format);
        least =
            std::min(least, std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    }
    books.seconds[format] = least;
}

/// The reader's process, the guess of the columns and the rows with what cannot be taken.
void BM_PreviewOfTable(benchmark::State& state, const std::string& format) {
    if (!RunningOffice::isInstalled()) return state.SkipWithError("LibreOffice is not installed");
    Workbooks& books = Workbooks::get();
    std::size_t rows = 0;
    const auto begin = std::chrono::steady_clock::now();
    for (auto _ : state) {
        const tables::Table table = tables::readTableFile(books.path(format));
        rows = exchange::takeTable(table, exchange::guessLayout(table, exchange::guessHeadingRow(table)))
                   .rows.size();
    }
    const double mean = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count() /
                        static_cast<double>(state.iterations());
    if (rows != bookRows) state.SkipWithError("rows are missing");
    if (books.seconds[format] > 0) state.counters["part of LibreOffice's"] = mean / books.seconds[format];
}

BENCHMARK_CAPTURE(BM_LibreOfficeConverts, xlsx, "xlsx")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);
BENCHMARK_CAPTURE(BM_PreviewOfTable, xlsx, "xlsx")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(10);
BENCHMARK_CAPTURE(BM_LibreOfficeConverts, ods, "ods")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);
BENCHMARK_CAPTURE(BM_PreviewOfTable, ods, "ods")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(10);

/// One line of set-ups that are sighted twice, six blocks each, as an instrument writes them.
std::string gsiText() {
    std::string text = "*410001+00000000?......2 \r\n*110002+0000000000000000 83..58+0000000010000000 \r\n";
    std::array<char, 200> line{};
    long level = 10'000'000;
    for (int block = 3; block + 4 < blocks; block += 5) {
        const int point = block / 5;
        const auto add = [&](int at, int name, const char* word, long value) {
            std::snprintf(line.data(), line.size(),
                          "*11%04d+%016d 32...8+0000000001824936 %s.08+%016ld 390...+0000000000000002 "
                          "391.08+0000000000000000 \r\n",
                          at % 10'000, name, word, value);
            text += line.data();
        };
        add(block, point, "331", 159'977);
        add(block + 1, point + 1, "332", 138'073);
        add(block + 2, point + 1, "336", 138'071);
        add(block + 3, point, "335", 159'979);
        level += 21'906;
        std::snprintf(line.data(), line.size(),
                      "*11%04d+%016d 571.08-0000000000000005 572.08-0000000000000005 573..8-0000000000109339 "
                      "574..8+0000000003759663 83..08+%016ld \r\n",
                      (block + 4) % 10'000, point + 1, level);
        text += line.data();
    }
    return text;
}

void BM_DigitalLevelFile(benchmark::State& state) {
    const std::string text = gsiText();
    std::size_t rows = 0;
    for (auto _ : state) {
        const exchange::LevelFile file = exchange::readLevelFile(text);
        rows = exchange::levelRows(file.lines.at(0), {}).size();
        if (!file.lines[0].troubles.empty()) state.SkipWithError("the line disagrees with itself");
    }
    if (rows < blocks / 5) state.SkipWithError("rows are missing");
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_DigitalLevelFile)->Unit(benchmark::kMillisecond);

} // namespace
