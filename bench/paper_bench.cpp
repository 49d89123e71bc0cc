#include "exchange/dxf.h"
#include "exchange/landxml.h"
#include "project/book.h"
#include "shell/controls/profile_view.h"
#include "shell/print/print_job.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTemporaryDir>

#include <cmath>
#include <memory>
#include <string>

// What a road costs on paper, in other programs' files and in the panes.

namespace {

/// A levelled road of `rows` rows: sections of three points every 10 m, a change point after every ten.
void fillRoad(sheet::Grid& grid, int rows) {
    grid.setRows(rows + 1);
    grid.setText(1, sheet::RLevel, "100");
    grid.setText(1, sheet::BackSight, "1.500");
    for (int row = 2; row <= rows; ++row) {
        const int point = (row - 2) % 31;
        const double level = 100 + 3 * std::sin(row * 0.003);
        grid.setText(row, sheet::RLevel, std::to_string(level));
        if (point == 30) {
            grid.setText(row, sheet::Chainage, "CP");
            grid.setText(row, sheet::ForeSight, "1.250");
            grid.setText(row, sheet::BackSight, "1.500");
            continue;
        }
        const int metres = ((row - 2) / 31 * 10 + point / 3) * 10;
        std::string chainage = std::to_string(1000 + metres % 1000).replace(0, 1, "-");
        chainage.insert(0, std::to_string(100 + metres / 1000).substr(1));
        grid.setText(row, sheet::Chainage, chainage);
        const int columns[] = {sheet::Left, sheet::Center, sheet::Right};
        grid.setText(row, columns[point % 3], point % 3 == 1 ? "0" : "3.50");
        grid.setText(row, sheet::InterSight, "1.235");
    }
}

const sheet::Grid& road(int rows) {
    static std::unique_ptr<project::Book> book;
    if (!book || book->MSFG.Rows() != rows + 1) {
        book = std::make_unique<project::Book>();
        fillRoad(book->MSFG, rows);
    }
    return book->MSFG;
}

void BM_Pdf(benchmark::State& state) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("book.pdf")).toStdString();
    int pages = 0;
    for (auto _ : state) {
        const shell::PrintJob job({road(int(state.range(0))), "road", {}}, {});
        if (writePdf(job, path, "road", {}).outcome != shell::Printed::Done) state.SkipWithError("no PDF");
        pages = job.count();
    }
    state.counters["pages"] = pages;
}

void exportTo(benchmark::State& state, const exchange::SectionExporter& exporter) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("road")).toStdString();
    for (auto _ : state) {
        survey::Sections sections(road(int(state.range(0))));
        if (!exchange::exportSections(sections, exporter, path).done())
            state.SkipWithError("nothing written");
    }
}

void BM_Dxf(benchmark::State& state) {
    exportTo(state, exchange::DxfExporter({}));
}

void BM_LandXml(benchmark::State& state) {
    exportTo(state, exchange::LandXmlExporter({}));
}

/// The sections of a whole book from nothing.
void BM_SectionsFromNothing(benchmark::State& state) {
    for (auto _ : state) {
        survey::Sections sections(road(int(state.range(0))));
        benchmark::DoNotOptimize(sections.points().size());
    }
}

/// One level changed in a book that is followed, and the points asked for again.
void BM_SectionsFollow(benchmark::State& state) {
    project::Book book;
    fillRoad(book.MSFG, int(state.range(0)));
    survey::Sections sections(book.MSFG);
    book.MSFG.addListener(sections);
    bool up = false;
    for (auto _ : state) {
        book.MSFG.setText(500, sheet::RLevel, (up = !up) ? "101.5" : "101.6");
        benchmark::DoNotOptimize(sections.points().size());
    }
    book.MSFG.removeListener(sections);
}

/// The long section painted anew: thinned, figures chosen, drawn.
void BM_LongSectionRepaint(benchmark::State& state) {
    shell::ProfileView view;
    view.resize(1200, 260);
    shell::ProfileContent content;
    for (int k = 0; k < state.range(0); ++k) {
        content.ground.push_back({k * 0.5, 100 + 3 * std::sin(k * 0.003) + k % 3 * 0.02});
        content.rows.push_back(k + 2);
    }
    view.show(std::move(content));
    QPixmap target(view.size());
    for (auto _ : state) {
        view.fit(); // drops what was painted
        view.render(&target);
    }
}

BENCHMARK(BM_Pdf)->Arg(8400)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Dxf)->Arg(8400)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LandXml)->Arg(8400)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SectionsFromNothing)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SectionsFollow)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LongSectionRepaint)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
