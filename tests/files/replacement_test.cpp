#include "files/error.h"
#include "files/folder.h"
#include "files/replacement.h"

#include "child_process.h"
#include "file_faults.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <functional>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

using files::Call;

void replace(const std::string& path, std::string_view content) {
    files::Replacement next(path);
    next.write(content);
    next.commit();
}

unsigned modeOf(const std::string& path) {
    return files::statusOfName(path).value().mode;
}

class ReplacementTest : public testing::Test {
  protected:
    [[nodiscard]] std::vector<std::string> names() const { return files::namesIn(folder.path()); }

    TempFolder folder;
};

TEST_F(ReplacementTest, ContentIsOnTheDiskBeforeItsNameAndTheNameBeforeTheEnd) {
    const std::string path = folder.write("book", "old");
    for (const files::Sibling::Onto onto : {files::Sibling::Onto::Anything, files::Sibling::Onto::Nothing}) {
        if (onto == files::Sibling::Onto::Nothing) files::remove(path);
        const FileFaults recorder;
        files::Replacement next(path);
        next.write("new");
        next.commit(onto);
        std::vector<Call> order;
        for (const Call call : recorder.calls)
            if (call == Call::Write || call == Call::Sync || call == Call::Rename || call == Call::SyncFolder)
                order.push_back(call);
        EXPECT_THAT(order, testing::ElementsAre(Call::Write, Call::Sync, Call::Rename, Call::SyncFolder));
    }
}

TEST_F(ReplacementTest, AFaultInAnyCallLeavesTheOldFileOrTheNewOneAlone) {
    const std::string path = folder / "book";
    int faults = 0;
    for (const int code : {EIO, ENOSPC, EACCES}) {
        for (std::size_t call = 0;; ++call) {
            folder.write("book", "old");
            std::size_t made = 0;
            bool raised = false;
            {
                const FileFaults recorder(call, code);
                try {
                    replace(path, "new content");
                } catch (const files::Error& error) {
                    raised = true;
                    EXPECT_EQ(error.code(), code);
                }
                made = recorder.calls.size();
            }
            const std::vector<std::string> warnings = files::takeWarnings();
            if (made <= call) break;
            ++faults;
            EXPECT_EQ(folder.read("book"), raised ? "old" : "new content") << "call " << call;
            EXPECT_TRUE(raised || warnings.size() <= 1);
            // A sibling whose removal is what failed goes with the next write.
            if (names().size() > 1) replace(path, "again");
            EXPECT_THAT(names(), testing::ElementsAre("book")) << "call " << call;
        }
    }
    EXPECT_GT(faults, 30);
}

TEST_F(ReplacementTest, AFolderThatIsNotSyncedIsToldBesideTheSuccess) {
    const std::string path = folder.write("book", "old");
    std::size_t last = 0;
    {
        const FileFaults recorder;
        replace(path, "new");
        last = recorder.calls.size() - 1;
    }
    const FileFaults fault(last);
    replace(path, "newer");
    EXPECT_EQ(folder.read("book"), "newer");
    EXPECT_THAT(files::takeWarnings(), testing::ElementsAre(testing::HasSubstr(folder.path())));
}

TEST_F(ReplacementTest, AnyNameThatCanBeOpenedCanBeReplaced) {
    const std::string path = folder / std::string(255, 'n');
    replace(path, "1");
    replace(path, "2");
    EXPECT_EQ(TempFolder::readFile(path), "2");
}

TEST_F(ReplacementTest, LeftOversOfTheDeadGoAndSiblingsInUseStay) {
    folder.write(".zavrogrl-1-1.tmp", "of a dead process");
    const std::string path = folder.write("book", "old");
    files::Replacement inUse(path);
    const int result = inChild([&] {
        replace(path, "of another process");
        return 0;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(names().size(), 2U) << "the book and the sibling in use";
    inUse.write("new");
    inUse.commit();
    EXPECT_EQ(folder.read("book"), "new");
    EXPECT_EQ(names().size(), 1U);
}

TEST_F(ReplacementTest, ANameIsReplacedWhateverStandsThereAndTakesTheRightsOfItsModel) {
    const std::string model = folder.write("book", "the book");
    const std::string victim = folder.write("victim", "untouched");
    ::chmod(model.c_str(), 0600);
    const bool attributes = ::setxattr(model.c_str(), "user.note", "kept", 4, 0) == 0;
    const std::string name = folder / "book.bak";
    const std::pair<const char*, std::function<void()>> standing[] = {
        {"nothing", [] {}},
        {"a link", [&] { ::symlink(victim.c_str(), name.c_str()); }},
        {"a pipe", [&] { ::mkfifo(name.c_str(), 0666); }},
        {"a file for all", [&] { ::chmod(folder.write("book.bak", "older").c_str(), 0666); }}};
    for (const auto& [what, make] : standing) {
        ::unlink(name.c_str());
        make();
        const files::OpenFile source(model, files::OpenFor::Reading);
        files::Replacement backup(name, source);
        backup.copy(source);
        backup.commit();
        EXPECT_EQ(files::statusOfName(name)->kind, files::Status::Kind::Plain) << what;
        EXPECT_EQ(TempFolder::readFile(name), "the book") << what;
        EXPECT_EQ(modeOf(name), 0600U) << what;
        char note[8] = {};
        EXPECT_EQ(::getxattr(name.c_str(), "user.note", note, sizeof note), attributes ? 4 : -1) << what;
    }
    EXPECT_EQ(folder.read("victim"), "untouched");
}

TEST_F(ReplacementTest, RightsOfAGroupDoNotPassToAnother) {
    ::chmod(folder.path().c_str(), 0777);
    const std::string path = folder.write("book", "old");
    ::chmod(path.c_str(), 0666);
    const auto replaceAsOther = [&] {
        return asOtherUser([&] {
            replace(path, "new");
            return 0;
        });
    };
    if (::geteuid() != 0) GTEST_SKIP() << "only root can become another user";
    const std::pair<unsigned, unsigned> cases[] = {{0666, 0666}, {0622, 0622}, {0642, 0602}, {0662, 0622}};
    for (const auto& [before, after] : cases) {
        ASSERT_EQ(::chown(path.c_str(), 0, 0), 0);
        ::chmod(path.c_str(), before);
        ASSERT_EQ(replaceAsOther(), 0) << std::oct << before;
        EXPECT_EQ(modeOf(path), after) << std::oct << before;
    }
}

} // namespace
