#include "cli/import_command.h"

#include "field_book.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <sstream>

namespace {

using testing::HasSubstr;

struct Import : testing::Test {
    TempFolder folder;
    std::ostringstream out, err;

    cli::ExitStatus import(cli::ImportOptions options) {
        out.str("");
        err.str("");
        if (options.out.empty()) options.out = "-";
        options.readerProgram = TABLE_READER;
        return cli::importFile(options, out, err);
    }
};

TEST_F(Import, TablesAsGuessedAsToldAndNotAtAll) {
    const std::string table =
        folder.write("book.csv", "Ch;B.S.;I.S.;R.L.;Note\n;1,525;;100;BM\n00-010;;1,2;;kerb\n");
    EXPECT_EQ(import({.file = table}), cli::Done);
    EXPECT_THAT(out.str(), HasSubstr(",,,,1.525,,,,100.000,BM\r\n00-010,,,,,1.2,,,,kerb"));
    EXPECT_EQ(import({.file = table, .list = true}), cli::Done);
    EXPECT_THAT(out.str(), HasSubstr("  B \"B.S.\": bs\n  C \"I.S.\": is\n"));
    EXPECT_EQ(import({.file = table, .columns = "A=chainage,C=fs"}), cli::Done);
    EXPECT_THAT(out.str(), HasSubstr("\n00-010,,,,,,1.2,,,\r\n"));
    EXPECT_EQ(import({.file = table, .line = 1}), cli::WrongUsage);

    const std::string both = folder.write("both.csv", "Ch,I.S.,F.S.\n00-000,1.1,1.2\n");
    EXPECT_EQ(import({.file = both}), cli::Failed);
    EXPECT_THAT(err.str(), HasSubstr("Row 2 has both an I.S. and an F.S."));

    for (const char* name : {"junk.csv", "junk.xlsx"}) {
        const std::string result = folder / "result.csv";
        EXPECT_EQ(import({.file = folder.write(name, "junk"), .out = result}), cli::Failed) << name;
        EXPECT_FALSE(std::filesystem::exists(result)) << name;
    }
}

TEST_F(Import, OneLevelLineAndTheOthersNamed) {
    const std::string lines = folder.write(
        "runs.gsi",
        "410001+?......1\n110002+0000000A 83..18+00100000\n110003+0000000A 32...8+00010000 331.08+00001500\n"
        "110004+0000000B 32...8+00010000 332.08+00000500\n"
        "110005+0000000B 571..8+00000000 574..8+00020000 83..08+00101000\n"
        "410006+?......1\n110007+0000000B 83..18+00101000\n110008+0000000B 32...8+00010000 331.08+00000500\n"
        "110009+0000000C 32...8+00010000 332.08+00001500\n"
        "110010+0000000C 571..8+00000000 574..8+00020000 83..08+00100000\n");
    EXPECT_EQ(import({.file = lines, .list = true}), cli::Done);
    EXPECT_THAT(out.str(), HasSubstr("2 lines"));
    EXPECT_EQ(import({.file = lines}), cli::Failed);
    EXPECT_THAT(err.str(), HasSubstr("Line 2 left out: B to C"));
    EXPECT_EQ(import({.file = lines, .line = 2}), cli::Done);
    EXPECT_THAT(out.str(), HasSubstr(",B\r\n"));
    EXPECT_EQ(import({.file = lines, .line = 3}), cli::WrongUsage);
    EXPECT_EQ(import({.file = lines, .points = "oo"}), cli::WrongUsage);

    std::string text = TempFolder::readFile(lines);
    const std::string differs =
        folder.write("differs.gsi", text.replace(text.find("00101000"), 8, "00101020"));
    EXPECT_EQ(import({.file = differs, .line = 1}), cli::Failed);
    EXPECT_EQ(out.str(), "");
    EXPECT_THAT(err.str(), HasSubstr("line 5 (110005"));
    EXPECT_EQ(import({.file = differs, .line = 1, .take = true}), cli::Done);
    EXPECT_THAT(out.str(), HasSubstr(",B\r\n"));
}

} // namespace
