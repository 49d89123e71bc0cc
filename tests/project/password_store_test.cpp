#include "project/password_store.h"

#include "dao/dao.h"
#include "error_number.h"
#include "file_faults.h"
#include "held_database.h"
#include "jet/database.h"
#include "scripted_desktop.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <optional>
#include <sys/stat.h>
#include <thread>

namespace {

class DatabaseStore : public testing::Test {
  protected:
    TempFolder folder;
    ScriptedDesktop desktop;
    const std::string store = folder / "Suprt.DLL"; // found whatever its case

    DatabaseStore() { desktop.folder = folder.path(); }

    void make(const std::vector<std::string>& passwords, const std::string& password = "pelqor",
              bool withGen = true) {
        jet::Database database = jet::Database::create(store, {.password = password});
        jet::Table table =
            database.createTable({"Pwd", {{.name = "pwd", .size = 50, .allowZeroLength = true}}, {}});
        for (const std::string& each : passwords)
            table.insert({each});
        if (withGen) database.createTable({"Gen", {{.name = "Gen", .size = 50}}, {}});
        database.commit();
    }
    std::vector<std::string> records() const {
        dao::Database open = dao::OpenDatabase(store, ";pwd=pelqor");
        dao::Recordset found = open.OpenRecordset("Pwd");
        std::vector<std::string> texts;
        for (; !found.EOF_(); found.MoveNext())
            texts.push_back(dao::toText(found.Fields("pwd").value()));
        return texts;
    }
    int errorOfReading() {
        return errorOf([this] { (void)project::passwordForLogin(desktop); });
    }
};

TEST_F(DatabaseStore, TheFirstRecordIsThePassword) {
    make({" Lead", "second"});
    folder.write("lgn.lgn", "not this one\r\n");
    EXPECT_EQ(project::passwordForLogin(desktop), " Lead"); // not trimmed: what is typed never matches it
    project::storePassword(desktop, "new");
    EXPECT_THAT(records(), testing::ElementsAre("new", "second"));
    EXPECT_EQ(project::storedPassword(desktop), "new");
    EXPECT_EQ(folder.read("lgn.lgn"), "not this one\r\n");
    struct stat found {};
    ASSERT_EQ(stat(store.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 0777, 0600U);

    std::filesystem::remove(store);
    make({}); // an empty password, which gets its record
    EXPECT_EQ(project::passwordForLogin(desktop), "");
    project::storePassword(desktop, "first");
    EXPECT_THAT(records(), testing::ElementsAre("first"));
}

TEST_F(DatabaseStore, OnesThatCannotBeReadRaiseTheEnginesErrorsAndStay) {
    make({"x"}, "other");
    EXPECT_EQ(errorOfReading(), 3031);
    std::filesystem::remove(store);
    make({"x"}, "pelqor", false);
    EXPECT_EQ(errorOfReading(), 3078); // Gen is missing
    {
        const HeldDatabase other(store, ";pwd=pelqor");
        EXPECT_EQ(errorOfReading(), 3045);
        EXPECT_THROW(project::storePassword(desktop, "y"), basic::RuntimeError);
    }
    const std::string whole = folder.read("Suprt.DLL");
    for (const std::size_t size : {std::size_t{0}, std::size_t{100}, std::size_t{4096}, whole.size() / 2}) {
        folder.write("Suprt.DLL", whole.substr(0, size));
        EXPECT_NE(errorOfReading(), 0) << size << " bytes";
        EXPECT_THROW(project::storePassword(desktop, "y"), basic::RuntimeError) << size << " bytes";
        EXPECT_EQ(folder.read("Suprt.DLL").size(), size);
    }
}

TEST(TextStore, ItsFirstLineIsTrimmed) {
    const TempFolder folder;
    ScriptedDesktop desktop;
    desktop.folder = folder.path();
    EXPECT_EQ(project::storedPassword(desktop), "") << "no file";
    for (const auto& [content, password] : {std::pair("", ""),
                                            {"\r\n", ""},
                                            {"  Level7  \n", "Level7"},
                                            {"a b\nc\n", "a b"},
                                            {"\xEF\xBB\xBFpass\r\n", "pass"},
                                            {"\xE9t\xE9\r\n", "été"}}) {
        folder.write("lgn.lgn", content);
        EXPECT_EQ(project::storedPassword(desktop), password) << content;
    }
}

TEST_F(DatabaseStore, OneThatIsThereAndCannotBeReadIsNoNewInstallation) {
    const auto unreadable = [&](files::Call failing, std::string_view name) {
        const FileFaults fault([=](files::Call call, const std::string& path) {
            return call == failing && path.ends_with(name) ? EACCES : 0;
        });
        return errorOfReading();
    };
    folder.write("LGN.lgn", "secret\r\n");
    EXPECT_EQ(unreadable(files::Call::Open, "LGN.lgn"), 75);
    EXPECT_EQ(unreadable(files::Call::ListFolder, folder.path()), 75);
    EXPECT_EQ(project::passwordForLogin(desktop), "secret");
    std::filesystem::remove(folder / "LGN.lgn");
    std::filesystem::create_symlink(folder / "gone", store);
    EXPECT_EQ(errorOfReading(), 3024);
    EXPECT_FALSE(std::filesystem::exists(folder / "lgn.lgn")) << "no empty store beside it";
}

TEST_F(DatabaseStore, OneThatIsBusyIsWaitedFor) {
    make({"kept"});
    std::optional<HeldDatabase> other(std::in_place, store, ";pwd=pelqor");
    std::thread closing([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        other.reset();
    });
    EXPECT_EQ(project::passwordForLogin(desktop), "kept");
    closing.join();
}

} // namespace
