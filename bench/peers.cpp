// Save, load and transfer of books of growing size beside other programs in one run: mdb-export on the same
// file (its time holds the start of a process and of a shell), SQLite with the same records in one
// transaction, and a plain write of as many bytes with fsync. Prints medians in milliseconds and the ratio of
// ours to theirs, by the clock on the wall and by processor time, which says more on a busy machine.
// Usage: peers [RUNS]

#include "exchange/transfer.h"
#include "project/book.h"
#include "project/load.h"
#include "project/project_file.h"
#include "project/report.h"
#include "project/save.h"
#include "scripted_desktop.h"
#include "sheet/reduction.h"
#include "tools/road_tables.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
constexpr int readingsOfChainage = 11;

/// As the window does it, progress of less than a percent costs nothing.
class QuietDesktop : public ScriptedDesktop {
  public:
    void setProgress(float) override {}
};

struct World {
    fs::path folder;
    QuietDesktop desktop;
    project::Book book;
};

/// Milliseconds by the clock on the wall, and of the processor, the processes that were started included.
struct Cost {
    double wall = 0;
    double processor = 0;
};

double processorMilliseconds() {
    double sum = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        for (const timeval& time : {usage.ru_utime, usage.ru_stime})
            sum += static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    }
    return sum;
}

Cost median(int runs, const std::function<void()>& prepare, const std::function<void()>& work) {
    std::vector<double> walls, processors;
    for (int run = 0; run < runs + 1; ++run) { // the first one warms up
        prepare();
        const double processor = processorMilliseconds();
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
        if (run == 0) continue;
        walls.push_back(wall.count());
        processors.push_back(processorMilliseconds() - processor);
    }
    const auto middle = [](std::vector<double>& times) {
        std::sort(times.begin(), times.end());
        return times[times.size() / 2];
    };
    return {middle(walls), middle(processors)};
}

void need(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "peers: %s failed\n", what);
    std::exit(1);
}

// A reduced cross-section book: at every metre of road a centre reading and five on either side.
void fillBook(project::Book& book, ScriptedDesktop& desktop, int readings) {
    sheet::Grid& grid = book.MSFG;
    grid.setRows(readings + 2);
    grid.setText(1, sheet::RLevel, "100.000");
    grid.setText(1, sheet::BackSight, "1.500");
    for (int k = 0; k < readings; ++k) {
        const int row = k + 2;
        const int chainage = k / readingsOfChainage;
        const int place = k % readingsOfChainage;
        std::string text = std::to_string(chainage % 1000);
        text.insert(0, 3 - text.size(), '0');
        const int kilometre = chainage / 1000;
        text.insert(0, (kilometre < 10 ? "0" : "") + std::to_string(kilometre) + "-");
        grid.setText(row, sheet::Chainage, text);
        const int offset = (place + 1) / 2;
        const int column = place == 0 ? sheet::Center : place % 2 == 1 ? sheet::Left : sheet::Right;
        grid.setText(row, column, place == 0 ? "0" : std::to_string(offset) + ".5");
        grid.setText(row, sheet::InterSight, "1." + std::to_string(100 + k % 900));
    }
    sheet::reduceLevels(book, desktop);
}

class Sqlite {
  public:
    explicit Sqlite(const fs::path& path) {
        need(sqlite3_open(path.c_str(), &m_db) == SQLITE_OK, "sqlite3_open");
    }
    Sqlite(const Sqlite&) = delete;
    Sqlite& operator=(const Sqlite&) = delete;
    ~Sqlite() { sqlite3_close(m_db); }
    void run(const char* sql) { need(sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr) == SQLITE_OK, sql); }
    sqlite3_stmt* prepare(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        need(sqlite3_prepare_v2(m_db, sql, -1, &statement, nullptr) == SQLITE_OK, sql);
        return statement;
    }

  private:
    sqlite3* m_db = nullptr;
};

void bindText(sqlite3_stmt* statement, int place, const std::string& text) {
    sqlite3_bind_text(statement, place, text.c_str(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

void sqliteSave(const World& world, const fs::path& path) {
    Sqlite db(path);
    db.run("create table Grl(Chn text, Oft real, B text, i text, F text, HI text, rl text, Rem text)");
    db.run("begin");
    sqlite3_stmt* insert = db.prepare("insert into Grl values(?,?,?,?,?,?,?,?)");
    const sheet::Grid& grid = world.book.MSFG;
    for (int row = 1; row < grid.Rows(); ++row) {
        bindText(insert, 1, grid.Text(row, sheet::Chainage));
        sqlite3_bind_double(insert, 2, std::atof(grid.Text(row, sheet::Right).c_str()));
        for (int col = sheet::BackSight; col <= sheet::Remark; ++col) {
            const std::string& text = grid.Text(row, col);
            if (text.empty())
                sqlite3_bind_null(insert, col - 1);
            else
                bindText(insert, col - 1, text);
        }
        need(sqlite3_step(insert) == SQLITE_DONE, "insert");
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    db.run("commit");
}

void sqliteTransfer(const World& world, const fs::path& path) {
    Sqlite db(path);
    db.run("create table CSect(Chn text, Side text, Oft real, Grl real, Frl real, Rmk text)");
    db.run("create unique index CSO on CSect(Chn, Side, Oft)");
    db.run("create table LSect(Chn text primary key, Grl real, Frl real, LRW real, RRW real)");
    db.run("begin");
    sqlite3_stmt* seek = db.prepare("select 1 from CSect where Chn=? and Side=? and Oft=?");
    sqlite3_stmt* point = db.prepare("insert into CSect values(?,?,?,?,?,'GG')");
    sqlite3_stmt* section = db.prepare("insert into LSect values(?,?,?,3.75,3.75)");
    const sheet::Grid& grid = world.book.MSFG;
    for (int row = 2; row < grid.Rows(); ++row) {
        const std::string& chainage = grid.Text(row, sheet::Chainage);
        const bool left = !grid.Text(row, sheet::Left).empty();
        const bool right = !grid.Text(row, sheet::Right).empty();
        const char* side = right ? "R" : left ? "L" : "C";
        const double offset = std::atof(grid.Text(row, right ? sheet::Right : sheet::Left).c_str());
        const double level = std::atof(grid.Text(row, sheet::RLevel).c_str());
        for (sqlite3_stmt* statement : {seek, point}) {
            bindText(statement, 1, chainage);
            sqlite3_bind_text(statement, 2, side, 1, SQLITE_STATIC);
            sqlite3_bind_double(statement, 3, offset);
        }
        need(sqlite3_step(seek) == SQLITE_DONE, "seek");
        sqlite3_reset(seek);
        sqlite3_bind_double(point, 4, level);
        sqlite3_bind_double(point, 5, level);
        need(sqlite3_step(point) == SQLITE_DONE, "point");
        sqlite3_reset(point);
        if (left || right) continue;
        bindText(section, 1, chainage);
        sqlite3_bind_double(section, 2, level);
        sqlite3_bind_double(section, 3, level);
        need(sqlite3_step(section) == SQLITE_DONE, "section");
        sqlite3_reset(section);
    }
    for (sqlite3_stmt* statement : {seek, point, section})
        sqlite3_finalize(statement);
    db.run("commit");
}

void plainWrite(const fs::path& path, const std::string& bytes) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    need(file >= 0 && ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
             ::fsync(file) == 0 && ::close(file) == 0,
         "plain write");
}

void print(const char* what, int readings, Cost ours, const char* peer, Cost theirs) {
    std::printf(
        "%-9s %8d   ours %9.2f ms   %-12s %9.2f ms   ratio %5.2f   processor %9.2f %9.2f   ratio %5.2f\n",
        what, readings, ours.wall, peer, theirs.wall, ours.wall / theirs.wall, ours.processor,
        theirs.processor, ours.processor / theirs.processor);
}

void compare(World& world, int readings, int runs) {
    const auto nothing = [] {};
    fillBook(world.book, world.desktop, readings);
    const fs::path grl = world.folder / ("book" + std::to_string(readings) + ".grl");
    fs::copy_file(world.folder / "app" / "grl.mdb", grl, fs::copy_options::overwrite_existing);
    world.book.setProjectPath(grl.string());
    world.book.FileName = grl.string();
    const fs::path other = world.folder / "other.sqlite";
    const auto removeOther = [&] { fs::remove(other); };

    const Cost save = median(runs, nothing, [&] { project::saveProject(world.book, world.desktop); });
    need(fs::file_size(grl) > static_cast<std::uintmax_t>(readings) * 20, "save");
    print("save", readings, save, "SQLite", median(runs, removeOther, [&] { sqliteSave(world, other); }));
    const std::string bytes(fs::file_size(grl), 'x');
    print("save", readings, save, "plain write",
          median(runs, removeOther, [&] { plainWrite(other, bytes); }));

    const std::string command = "mdb-export '" + grl.string() + "' Grl > /dev/null";
    project::Report report(world.desktop);
    const Cost load =
        median(runs, nothing, [&] { need(project::op(world.book, world.desktop, report), "load"); });
    print("load", readings, load, "mdb-export",
          median(runs, nothing, [&] { need(std::system(command.c_str()) == 0, "mdb-export"); }));

    fillBook(world.book, world.desktop, readings);
    const fs::path road = world.folder / "road";
    const Cost transfer = median(
        runs,
        [&] {
            fs::remove_all(road);
            fs::create_directory(road);
        },
        [&] {
            exchange::ExportFrame frame;
            const auto end = exchange::transfer(world.book, world.desktop, frame);
            need(end == exchange::TransferEnd::Done, "transfer");
        });
    print("transfer", readings, transfer, "SQLite",
          median(runs, removeOther, [&] { sqliteTransfer(world, other); }));
}

} // namespace

int main(int argc, char** argv) {
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    World world;
    std::string form = (fs::temp_directory_path() / "zavrogrl-peers-XXXXXX").string();
    need(mkdtemp(form.data()) != nullptr, "a temporary folder");
    world.folder = form;
    const fs::path app = world.folder / "app";
    fs::copy(PEERS_TEMPLATES, app, fs::copy_options::recursive);
    world.desktop.folder = app.string();
    world.book.DefaultFolder = (world.folder / "road").string();
    setenv("HOME", world.folder.c_str(), 1);
    mdlTools::InitLSectFieldTable();
    for (const int readings : {1'000, 10'000, 100'000})
        compare(world, readings, runs);
    fs::remove_all(world.folder);
    return 0;
}
