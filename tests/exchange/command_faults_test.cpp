#include "child_process.h"
#include "entry/entry_settings.h"
#include "exchange/csv_export.h"
#include "file_faults.h"
#include "project/default_folder.h"
#include "project/load.h"
#include "project/password_store.h"
#include "project/project_commands.h"
#include "project/project_file.h"
#include "project/recent_files.h"
#include "project/recovery.h"
#include "project/save.h"
#include "road_fixture.h"

#include "files/folder.h"

#include <csignal>
#include <functional>
#include <map>

namespace {

namespace fs = std::filesystem;

/// A desk with a book that was changed since it was opened: the file says "old", the grid "new".
class Desk : public RoadTest {
  public:
    using RoadTest::book;
    using RoadTest::desktop;
    using RoadTest::frame;
    using RoadTest::home;
    using RoadTest::roads;

    Desk() {
        static const std::string other = bookFile("other");
        static const std::string old = bookFile("old");
        home.write("other.grl", other);
        home.write("Site1.grl", old);
        home.write("app/lgn.lgn", "old\r\n");
        EXPECT_TRUE(project::openPath(book, desktop, home / "Site1.grl"));
        home.write("Site1.csv", "old");
        home.write("app/GRL.LVX", (home / "other.grl") + "\r\n");
        home.write("app/ZavroGRL.LVX", "0110\r\n");
        book.MSFG.setText(1, sheet::Remark, "new");
        book.BookChanged = true;
        frame.Dsb();
        frame.visible = true;
    }

    /// What each file holds as far as it counts; a database that is damaged raises.
    [[nodiscard]] std::map<std::string, std::string> contents() const {
        std::map<std::string, std::string> all;
        for (const std::string& name : filesIn(home.path())) {
            const std::string path = home / name;
            if (name.find("app/recovery-") == 0 || name.find(".tmp") != std::string::npos) continue;
            if (name.find(".grl") != std::string::npos)
                all[name] = bookIn(path);
            else if (name.ends_with("Road.mdb"))
                all[name] = cross(path);
            else if (!name.ends_with(".mdb"))
                all[name] = withoutHome(home.read(name));
        }
        return all;
    }

    [[nodiscard]] std::string withoutHome(std::string text) const {
        for (std::size_t at = 0; (at = text.find(home.path(), at)) != std::string::npos;)
            text.erase(at, home.path().size());
        return text;
    }

    [[nodiscard]] bool hasWork(bool ended) const {
        if (!ended && project::isUnsaved(book) && book.MSFG.Text(1, sheet::Remark) == "new") return true;
        for (const auto& [name, content] : contents())
            if (name.find(".grl") != std::string::npos && content == "new") return true;
        ScriptedDesktop next;
        next.folder = desktop.folder;
        next.answers = {desktop::Answer::Yes};
        project::Book found;
        project::Recovery(found, next).offer();
        return found.MSFG.Text(1, sheet::Remark) == "new";
    }

    static std::string bookIn(const std::string& path) {
        dao::Database database = dao::OpenDatabase(path, project::connect);
        dao::Recordset grl = database.OpenRecordset("Grl");
        return grl.EOF_() ? "" : dao::toText(grl.Fields("Rem").value());
    }

    void TestBody() override {}

  private:
    [[nodiscard]] std::string bookFile(const std::string& remark) {
        project::Book made;
        keyRows(made.MSFG, {"00-000,3.15,,,,,,,11.366," + remark, "00-000,,0,,,,,,11.350"});
        EXPECT_TRUE(project::makeProject(made, desktop, home / "made.grl").whole());
        std::string bytes = home.read("made.grl");
        fs::remove(home / "made.grl");
        return bytes;
    }
};

struct Command {
    const char* name;
    /// True when the process is to end.
    std::function<bool(Desk&)> run;
};

const std::vector<Command> commands{
    {"New",
     [](Desk& desk) {
         desk.book.BookChanged = false; // as after an import: nothing is asked
         desk.desktop.files = {desk.home / "fresh.grl"};
         project::newProject(desk.book, desk.desktop);
         return false;
     }},
    {"first Save",
     [](Desk& desk) {
         desk.book.Caption = project::Book::captionPrefix;
         desk.desktop.files = {desk.home / "first.grl"};
         project::saveProject(desk.book, desk.desktop);
         return false;
     }},
    {"Save",
     [](Desk& desk) {
         project::saveProject(desk.book, desk.desktop);
         return false;
     }},
    {"Save As",
     [](Desk& desk) {
         desk.desktop.files = {desk.home / "other.grl"};
         project::saveProjectAs(desk.book, desk.desktop);
         return false;
     }},
    {"Exit, Yes",
     [](Desk& desk) {
         desk.desktop.answers = {desktop::Answer::Yes};
         return project::exitProgram(desk.book, desk.desktop);
     }},
    {"Open, Yes",
     [](Desk& desk) {
         desk.desktop.answers = {desktop::Answer::Yes};
         desk.desktop.files = {desk.home / "other.grl"};
         project::openProject(desk.book, desk.desktop);
         return false;
     }},
    {"CSV",
     [](Desk& desk) {
         exchange::exportCsv(desk.book, desk.desktop);
         return false;
     }},
    {"settings",
     [](Desk& desk) {
         entry::acceptSettings(desk.book, desk.desktop);
         return false;
     }},
    {"lists",
     [](Desk& desk) {
         project::Sv(desk.book, desk.desktop);
         project::mNu(desk.book, desk.desktop);
         project::chooseDefaultFolder(desk.book, desk.desktop, desk.roads);
         return false;
     }},
    {"password",
     [](Desk& desk) {
         project::storePassword(desk.desktop, "new");
         return false;
     }},
    {"recovery",
     [](Desk& desk) {
         project::Recovery recovery(desk.book, desk.desktop);
         recovery.keep();
         desk.desktop.time += std::chrono::minutes(1);
         recovery.keep();
         return false;
     }},
    {"transfer",
     [](Desk& desk) {
         exchange::transfer(desk.book, desk.desktop, desk.frame);
         return false;
     }},
};

/// Each file is as it was or as the command makes it; the empty project under the name with "aa" and a copy
/// of a version that could not be told from another program's may stand beside them.
void expectWhole(const Desk& desk, const std::map<std::string, std::string>& before,
                 const std::map<std::string, std::string>& whole) {
    for (const auto& [name, content] : desk.contents()) {
        const bool old = before.contains(name) && before.at(name) == content;
        const bool made = whole.contains(name) && whole.at(name) == content;
        const bool beside = (name.ends_with("grlaa") && content.empty()) ||
                            (name.find(".other-") != std::string::npos && content == "old");
        EXPECT_TRUE(old || made || beside) << name << " holds " << content.substr(0, 80);
    }
    for (const auto& [name, content] : before)
        EXPECT_TRUE(fs::exists(desk.home / name)) << name << " is gone";
}

enum class Fault { OneCall, DiskGone, Killed };

void meet(const Command& command, Fault fault, std::size_t failing,
          const std::map<std::string, std::string>& whole) {
    Desk desk;
    const std::map<std::string, std::string> before = desk.contents();
    bool ended = false;
    const auto run = [&] {
        const FileFaults faults([&, number = std::size_t{0}](files::Call, const std::string&) mutable {
            const std::size_t call = number++;
            if (fault == Fault::Killed && call == failing) ::kill(::getpid(), SIGKILL);
            return fault == Fault::OneCall ? EIO * (call == failing) : EIO * (call >= failing);
        });
        try {
            ended = command.run(desk);
        } catch (const basic::RuntimeError&) {
            ended = false; // told by who called
        }
        return 0;
    };
    if (fault == Fault::Killed) {
        constexpr int noExit = 98;
        EXPECT_EQ(inChild(run), noExit);
    } else {
        run();
        EXPECT_TRUE(desk.hasWork(ended)) << "the work is lost";
    }
    expectWhole(desk, before, whole);
    project::storePassword(desk.desktop, "next"); // each next write clears its folder
    project::makeProject(desk.book, desk.desktop, desk.home / "next.grl");
    for (const std::string& folder : {desk.home.path(), desk.desktop.folder})
        for (const std::string& name : files::namesIn(folder))
            EXPECT_FALSE(name.starts_with(".zavrogrl-")) << name << " is left over";
}

TEST(CommandFaults, AFaultInAnyCallLosesNothing) {
    if (fs::is_directory("/dev/shm")) setenv("TMPDIR", "/dev/shm", 1); // thousands of syncs of a real disk
    for (const Command& command : commands) {
        Desk sound;
        std::size_t calls = 0;
        {
            const FileFaults counter;
            command.run(sound);
            calls = counter.calls.size();
        }
        EXPECT_GT(calls, 4U) << command.name;
        for (const Fault fault : {Fault::OneCall, Fault::DiskGone, Fault::Killed}) {
            for (std::size_t failing = 0; failing < calls && !HasFailure(); ++failing) {
                SCOPED_TRACE(std::string(command.name) + ", fault " +
                             std::to_string(static_cast<int>(fault)) + ", call " + std::to_string(failing));
                meet(command, fault, failing, sound.contents());
            }
        }
    }
}

} // namespace
