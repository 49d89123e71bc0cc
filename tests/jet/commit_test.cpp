#include "check.h"
#include "child_process.h"
#include "engine_fixture.h"
#include "temp_folder.h"

#include <csignal>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

namespace jet {
namespace {

enum class Call { Size, Read, BeginReplace, Keep, Append, FinishReplace };

/// A file that lets `meet` throw before any call.
class FailingFile : public SharedFile {
  public:
    FailingFile(std::shared_ptr<MemoryFile> file, std::function<void(Call)> meet)
        : SharedFile(std::move(file)), m_meet(std::move(meet)) {}
    std::uint64_t size() override { return m_meet(Call::Size), SharedFile::size(); }
    void read(std::uint64_t offset, std::span<std::uint8_t> into) override {
        m_meet(Call::Read), SharedFile::read(offset, into);
    }
    void beginReplace() override { m_meet(Call::BeginReplace), SharedFile::beginReplace(); }
    void keep(std::uint64_t offset, std::uint64_t length) override {
        m_meet(Call::Keep), SharedFile::keep(offset, length);
    }
    void append(std::span<const std::uint8_t> bytes) override {
        m_meet(Call::Append), SharedFile::append(bytes);
    }
    void finishReplace() override { m_meet(Call::FinishReplace), SharedFile::finishReplace(); }

  private:
    std::function<void(Call)> m_meet;
};

/// A disk that is gone after so many calls.
std::unique_ptr<File> goneAfter(int calls, const std::shared_ptr<MemoryFile>& file) {
    return std::make_unique<FailingFile>(file, [calls](Call) mutable {
        if (calls-- <= 0) throw Error(ErrorKind::Io, "The disk failed.");
    });
}

TableDesign bookDesign() {
    return {.name = "Book",
            .columns = {{.name = "Chn", .type = ColumnType::Text, .size = 25},
                        {.name = "Oft", .type = ColumnType::Double},
                        {.name = "Rem", .type = ColumnType::Memo}},
            .indexes = {{.name = "Key", .columns = {{"Chn"}, {"Oft"}}, .kind = IndexKind::PrimaryKey}}};
}

Row bookRow(int i) {
    return {std::to_string(i % 50) + "-" + std::to_string(i), i * 0.5,
            std::string(static_cast<std::size_t>(i) * 3, 'r')};
}

void fill(Table table, int rows) {
    for (int i = 0; i < rows; ++i)
        table.insert(bookRow(i));
}

Bytes bookFile(int rows) {
    const MemoryDisk disk;
    Database db = disk.create();
    fill(db.createTable(bookDesign()), rows);
    db.commit();
    return disk.content();
}

struct Operation {
    const char* name;
    std::function<void(Database&)> run;
};

const std::vector<Operation> operations{
    {"save",
     [](Database& db) {
         Table table = db.table("Book");
         table.clear();
         fill(table, 400);
     }},
    {"seek and insert",
     [](Database& db) {
         Table table = db.table("Book");
         for (int i = 0; i < 400; ++i)
             if (const Row row = bookRow(i); !table.seek(0, std::span(row).first(2))) table.insert(row);
     }},
    {"add a column", [](Database& db) { db.addColumn("Book", {.name = "Grl", .type = ColumnType::Single}); }},
    {"empty", [](Database& db) { db.table("Book").clear(); }},
    {"add a table", [](Database& db) { db.createTable({.name = "Other", .columns = {{.name = "A"}}}); }},
};

TEST(CommitTest, AFailureAtAnyCallLeavesTheOldStateOrTheNewOne) {
    const Bytes old = bookFile(200);
    for (const Operation& operation : operations) {
        const MemoryDisk whole(old);
        Database sound = whole.open();
        operation.run(sound);
        sound.setClock([] { return DateTime{40000}; });
        sound.commit();
        int failures = 0;
        for (int calls = 0;; ++calls) {
            auto file = std::make_shared<MemoryFile>(old);
            std::optional<ErrorKind> kind = errorOf([&] {
                Database db = Database::open(goneAfter(calls, file));
                operation.run(db);
                db.commit();
            });
            if (!kind) break;
            ++failures;
            ASSERT_EQ(kind, ErrorKind::Io) << operation.name << " at call " << calls;
            ASSERT_EQ(file->content(), old) << operation.name << " at call " << calls;
        }
        EXPECT_GT(failures, 10) << operation.name;
        EXPECT_EQ(check(sound), std::vector<std::string>{}) << operation.name;
    }
}

TEST(CommitTest, AFailureWhileADatabaseIsMadeLeavesNothing) {
    int failures = 0;
    for (int calls = 0;; ++calls) {
        auto file = std::make_shared<MemoryFile>(Bytes{});
        const std::optional<ErrorKind> kind = errorOf([&] {
            Database db = Database::create(goneAfter(calls, file));
            fill(db.createTable(bookDesign()), 2000); // several megabytes, so several writes
            db.commit();
        });
        if (!kind) {
            EXPECT_EQ(MemoryDisk(file->content()).open().table("Book").rowCount(), 2000U);
            break;
        }
        ++failures;
        ASSERT_EQ(kind, ErrorKind::Io) << "at call " << calls;
        ASSERT_TRUE(file->content().empty()) << "at call " << calls;
    }
    EXPECT_GE(failures, 4);
}

TEST(CommitTest, AFailedCommitCanBeRepeated) {
    auto file = std::make_shared<MemoryFile>(bookFile(10));
    bool first = true;
    Database db = Database::open(std::make_unique<FailingFile>(file, [&first](Call call) {
        if (call == Call::FinishReplace && std::exchange(first, false))
            throw Error(ErrorKind::Full, "The disk is full.");
    }));
    db.table("Book").insert(bookRow(99));
    EXPECT_EQ(errorOf([&] { db.commit(); }), ErrorKind::Full);
    EXPECT_TRUE(db.changed());
    db.commit();
    EXPECT_EQ(MemoryDisk(file->content()).open().table("Book").rowCount(), 11U);
}

TEST(CommitTest, AChangeThatWasBrokenOffIsNeverWritten) {
    const Bytes old = bookFile(400);
    int brokenOff = 0;
    for (int calls = 0; calls < 200; ++calls) {
        auto file = std::make_shared<MemoryFile>(old);
        const auto badPage = [left = calls](Call call) mutable {
            if (call == Call::Read && left-- == 0) throw Error(ErrorKind::Io, "The page cannot be read.");
        };
        std::optional<Database> db;
        if (errorOf([&] { db = Database::open(std::make_unique<FailingFile>(file, badPage)); })) continue;
        const std::vector<Value> key{bookRow(300)[0], bookRow(300)[1]};
        if (!errorOf([&] {
                Table table = db->table("Book");
                table.erase(*table.seek(0, key));
            }))
            break;
        const std::optional<ErrorKind> atCommit = errorOf([&] { db->commit(); });
        if (atCommit == ErrorKind::Corrupt)
            ++brokenOff;
        else
            EXPECT_EQ(atCommit, std::nullopt);
        ASSERT_EQ(file->content(), old) << "at call " << calls;
    }
    EXPECT_GT(brokenOff, 0);
}

class CommitOnDiskTest : public ::testing::Test {
  protected:
    CommitOnDiskTest() {
        Database db = Database::create(path);
        fill(db.createTable(bookDesign()), 20);
        db.commit();
    }
    [[nodiscard]] std::size_t files() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(folder.path()), {}));
    }
    void addRow(int i) const {
        Database db = Database::open(path);
        db.table("Book").insert(bookRow(i));
        db.commit();
    }
    [[nodiscard]] std::uint32_t rows() const {
        return Database::open(path, {}, OpenMode::ReadOnly).table("Book").rowCount();
    }

    TempFolder folder;
    std::string path = folder / "Site 1.grl";
};

TEST_F(CommitOnDiskTest, RefusesAFileThatChangedUnderneath) {
    const Bytes original = contentOf(path);
    struct Case {
        const char* what;
        std::function<void()> change;
    };
    const auto rewrite = [&](const Bytes& content) {
        folder.write("Site 1.grl", std::string(content.begin(), content.end()));
    };
    Bytes counted = original;
    counted[4096 - 500] ^= 1; // as another engine counts its commits
    const std::vector<Case> cases{
        {"written in place", [&] { rewrite(counted); }},
        {"replaced",
         [&] {
             std::filesystem::copy_file(path, folder / "other");
             std::filesystem::rename(folder / "other", path);
         }},
        {"removed", [&] { std::filesystem::remove(path); }},
        {"longer", [&] { std::filesystem::resize_file(path, original.size() + 4096); }},
    };
    for (const Case& c : cases) {
        rewrite(original);
        Database db = Database::open(path);
        db.table("Book").insert(bookRow(50));
        c.change();
        EXPECT_EQ(errorOf([&] { db.commit(); }), ErrorKind::ChangedUnderneath) << c.what;
        EXPECT_EQ(files(), c.what == std::string("removed") ? 0U : 1U) << c.what;
    }
    rewrite(original);
    Database db = Database::open(path);
    db.table("Book").insert(bookRow(50));
    db.commit();
    db.table("Book").insert(bookRow(51));
    EXPECT_EQ(errorOf([&] { db.commit(); }), std::nullopt) << "its own commit is no change underneath";
}

TEST_F(CommitOnDiskTest, TellsWhyAFileCannotBeOpenedOrMade) {
    EXPECT_EQ(errorOf([&] { (void)Database::open(folder / "none.grl"); }), ErrorKind::FileNotFound);
    EXPECT_EQ(errorOf([&] { (void)Database::open(folder / "none/none.grl"); }), ErrorKind::FolderNotFound);
    EXPECT_EQ(errorOf([&] { (void)Database::open(folder.path()); }), ErrorKind::NotADatabase);
    EXPECT_EQ(errorOf([&] { (void)Database::create(path); }), ErrorKind::AlreadyExists);
    EXPECT_EQ(errorOf([&] { (void)Database::create(folder / "none/new.grl"); }), ErrorKind::FolderNotFound);
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(errorOf([&] { (void)Database::open(folder / "pipe"); }), ErrorKind::NotADatabase);
    Database late = Database::create(folder / "late.grl");
    folder.write("late.grl", "somebody else was first");
    EXPECT_EQ(errorOf([&] { late.commit(); }), ErrorKind::AlreadyExists);
    EXPECT_EQ(folder.read("late.grl"), "somebody else was first");
}

TEST_F(CommitOnDiskTest, ALeftOverOfADeadProcessGoes) {
    folder.write(".zavrogrl-999999999-1.tmp", "half of a file");
    addRow(50);
    EXPECT_EQ(rows(), 21U);
    EXPECT_EQ(files(), 1U);
}

constexpr int noError = 97;

int kindOf(const std::function<void()>& action) {
    const std::optional<ErrorKind> kind = errorOf(action);
    return kind ? static_cast<int>(*kind) : noError;
}

TEST_F(CommitOnDiskTest, RightsAreRespected) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs to become another user";
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
    ASSERT_EQ(::chown(path.c_str(), nobody, nobody), 0);
    const auto asNobody = [](const std::function<void()>& work) {
        return asOtherUser([&] { return kindOf(work); });
    };
    const auto change = [this] { addRow(50); };
    const auto look = [this] { (void)rows(); };
    const Bytes before = contentOf(path);
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    EXPECT_EQ(asNobody(change), static_cast<int>(ErrorKind::ReadOnly));
    EXPECT_EQ(asNobody(look), noError);
    ASSERT_EQ(::chmod(path.c_str(), 0000), 0);
    EXPECT_EQ(asNobody(look), static_cast<int>(ErrorKind::PermissionDenied));
    ASSERT_EQ(::chown(path.c_str(), 0, 0), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    EXPECT_EQ(asNobody(change), static_cast<int>(ErrorKind::PermissionDenied)) << "another's file";
    ASSERT_EQ(::chown(path.c_str(), nobody, nobody), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
    EXPECT_EQ(asNobody(change), static_cast<int>(ErrorKind::PermissionDenied)) << "a read-only folder";
    EXPECT_EQ(contentOf(path), before);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
    EXPECT_EQ(asNobody(change), noError);
}

TEST_F(CommitOnDiskTest, AKilledProcessLeavesTheOldStateOrTheNewOne) {
    Random random(200);
    std::uint32_t before = rows();
    int kills = 0;
    for (int round = 0; round < 200; ++round) {
        const pid_t pid = startChild([&] {
            for (int i = 0;; ++i) {
                Database db = Database::open(path);
                Table table = db.table("Book");
                const std::uint32_t count = table.rowCount() % 900;
                table.clear();
                fill(table, static_cast<int>(count) + 1);
                db.commit();
            }
            return 0;
        });
        ::usleep(random() % 30000);
        ::kill(pid, SIGKILL);
        kills += endOf(pid) == 98;
        Database db = Database::open(path);
        const Table table = db.table("Book");
        ASSERT_EQ(check(db), std::vector<std::string>{}) << "round " << round;
        ASSERT_EQ(rowsOf(table).size(), table.rowCount());
        ASSERT_GE(table.rowCount(), 1U);
        before = table.rowCount();
    }
    EXPECT_EQ(kills, 200);
    EXPECT_GT(before, 20U) << "nothing was ever committed";
}

} // namespace
} // namespace jet
