// Save and load of a project through the commands, grid included, and the share that the database has in
// them: the same records written and read through the data access objects alone.

#include "dao/dao.h"
#include "desktop/desktop.h"
#include "jet/database.h"
#include "project/book.h"
#include "project/load.h"
#include "project/project_file.h"
#include "project/report.h"
#include "project/save.h"

#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <stdexcept>
#include <stdlib.h>
#include <string>

namespace {

/// A desktop that shows nothing.
class QuietDesktop : public desktop::Desktop {
  public:
    explicit QuietDesktop(std::string folder) : m_folder(std::move(folder)) {}
    desktop::Answer messageBox(std::string_view text, desktop::Buttons, std::string_view) override {
        throw std::runtime_error(std::string(text));
    }
    std::string inputBox(std::string_view, std::string_view, std::string_view) override { return {}; }
    std::optional<std::string> fileDialog(desktop::FileDialog, std::string_view) override {
        return std::nullopt;
    }
    std::optional<std::string> clipboardText() override { return std::nullopt; }
    void setClipboardText(std::string_view) override {}
    void beep() override {}
    void showProgress() override {}
    void setProgress(float) override {}
    void hideProgress() override {}
    void status(std::string_view) override {}
    void focusGrid() override {}
    bool moveToTrash(std::string_view) override { return false; }
    std::chrono::system_clock::time_point now() override { return std::chrono::system_clock::now(); }
    std::string programFolder() override { return m_folder; }

  private:
    std::string m_folder;
};

constexpr std::array<const char*, 8> fields{"Chn", "Oft", "B", "i", "F", "HI", "rl", "Rem"};

/// A folder with the template, a project of `rows` rows in it and the book that it was made of.
struct Setting {
    explicit Setting(int rows) {
        std::string form = (std::filesystem::temp_directory_path() / "zavrogrl-bench-XXXXXX").string();
        if (mkdtemp(form.data()) == nullptr) throw std::runtime_error("no temporary folder");
        folder = form;
        path = folder + "/road.grl";
        makeTemplate();
        book.MSFG.setRows(rows + 1);
        for (int row = 1; row <= rows; ++row) {
            const std::string number = std::to_string(row);
            book.MSFG.setText(row, sheet::Chainage, "01-" + number.substr(0, 20));
            book.MSFG.setText(row, row % 2 == 0 ? sheet::Left : sheet::Right, "2.5");
            book.MSFG.setText(row, sheet::InterSight, "1.525");
            book.MSFG.setText(row, sheet::RLevel, "100.475");
            if (row % 10 == 0) book.MSFG.setText(row, sheet::Remark, "edge of the road " + number);
        }
        desktop = std::make_unique<QuietDesktop>(folder);
        book.setProjectPath(path);
        if (!project::makeProject(book, *desktop, path).whole()) throw std::runtime_error("no project");
    }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;
    ~Setting() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    void makeTemplate() const {
        jet::Database made = jet::Database::create(folder + "/grl.mdb", {.password = "MoraKin"});
        jet::TableDesign design{"Grl", {}, {}};
        for (const char* name : fields)
            design.columns.push_back(
                {.name = name, .type = jet::ColumnType::Text, .size = 40, .allowZeroLength = true});
        design.columns[1].type = jet::ColumnType::Double;
        made.createTable(design);
        made.commit();
    }

    std::string folder;
    std::string path;
    project::Book book;
    std::unique_ptr<QuietDesktop> desktop;
};

void save(benchmark::State& state) {
    Setting setting(static_cast<int>(state.range(0)));
    for (auto _ : state)
        if (!project::rewriteProject(setting.book, *setting.desktop).whole())
            state.SkipWithError("not saved");
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void load(benchmark::State& state) {
    Setting setting(static_cast<int>(state.range(0)));
    setting.book.FileName = setting.path;
    project::Report report(*setting.desktop);
    for (auto _ : state)
        if (!project::op(setting.book, *setting.desktop, report)) state.SkipWithError("not loaded");
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void engineWrites(benchmark::State& state) {
    const Setting setting(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        dao::Database database = dao::OpenDatabase(setting.path, project::connect);
        dao::Recordset grl = database.OpenRecordset("Grl");
        for (; !grl.EOF_(); grl.MoveNext())
            grl.Delete();
        dao::Field chainage = grl.Fields("Chn");
        dao::Field offset = grl.Fields("Oft");
        dao::Field reading = grl.Fields("i");
        dao::Field level = grl.Fields("rl");
        for (std::int64_t row = 0; row < state.range(0); ++row) {
            grl.AddNew();
            chainage.setValue("01-250");
            offset.setValue(dao::Value(2.5));
            reading.setValue("1.525");
            level.setValue("100.475");
            grl.Update();
        }
        database.Close();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void engineReads(benchmark::State& state) {
    const Setting setting(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        dao::Database database = dao::OpenDatabase(setting.path, project::connect);
        dao::Recordset grl = database.OpenRecordset("Grl");
        for (; !grl.EOF_(); grl.MoveNext())
            for (int field = 0; field < grl.FieldCount(); ++field)
                benchmark::DoNotOptimize(grl.Fields(field).value());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(save)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(engineWrites)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(load)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(engineReads)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
