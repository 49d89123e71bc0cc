#include "cli/check_command.h"
#include "cli/levels_command.h"

#include "basic/files.h"
#include "field_book.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <sstream>

namespace {

using testing::HasSubstr;

struct SurveyCommands : testing::Test {
    TempFolder folder;
    std::istringstream in;
    std::ostringstream out, err;
    cli::LevelsOptions options;

    cli::ExitStatus levels(const std::string& book, const std::vector<std::pair<int, double>>& known = {}) {
        out.str("");
        err.str("");
        options.book = book;
        options.closing.known = known;
        return cli::levels(options, in, out, err);
    }
};

TEST_F(SurveyCommands, LevelsInEveryForm) {
    const std::string loop = testData("books/ge120-loop.csv");
    EXPECT_EQ(levels(loop), cli::Done);
    EXPECT_THAT(out.str(), HasSubstr("\n  Not closed: no known level at the end\n"));
    EXPECT_EQ(levels(loop, {{19, 100}}), cli::Failed);
    EXPECT_THAT(out.str(), HasSubstr("Does not close: 85 mm, allowed 21 mm"));
    EXPECT_EQ(levels(loop, {{200, 100}}), cli::WrongUsage);

    options.length = 36;
    options.json = options.riseAndFall = true;
    options.csv = folder / "levels.csv";
    options.closing.method = survey::Method::Distance;
    EXPECT_EQ(levels(loop, {{19, 100}}), cli::Failed);
    EXPECT_EQ(out.str(),
              R"([{"from": "BM 1 assumed", "to": "BM 1 closing", "fromRow": 1, "toRow": 19, "setups": 18, )"
              R"("lengthKm": 36.0, "lengthSource": "typed", "found": 99.915, "known": 100.000, )"
              R"("misclosureMm": -85.00, "allowedMm": 72.00, "verdict": "fails"}])"
              "\n");
    EXPECT_THAT(err.str(), HasSubstr("Adjusted by set-ups")); // the book has no chainages
    const std::vector<std::string> lines = basic::readLines(options.csv);
    ASSERT_EQ(lines.size(), 20U); // written although the run does not close
    EXPECT_EQ(lines[2], "2,98.710,4.72,98.715,,1.290");
    EXPECT_EQ(lines[19], "19,99.915,85.00,100.000,0.400,");
    EXPECT_EQ(levels(loop, {{10, 106}, {19, 100}}), cli::WrongUsage); // two sections, one length
}

TEST_F(SurveyCommands, BooksThatBreakOff) {
    in.str("Chainage,\r\n,,,,1,,,,100,A\r\nCP,,,,1,,1,,,\"B \"\"x\"\" = 100\"\r\nCP,,,,1,,1.2.3,,,\r\n");
    EXPECT_EQ(levels("-"), cli::Failed);
    EXPECT_THAT(out.str(), HasSubstr("A (row 1) to B \"x\" (row 2)"));
    EXPECT_THAT(err.str(), HasSubstr("row 3: a text that is no number"));
    EXPECT_EQ(levels(folder / "none.csv"), cli::Failed);
    for (const char* text : {"", "5", "=1", "x=1", "5=", "5=1x", "-1=5", "99999999=1", "1=1e999"})
        EXPECT_FALSE(cli::knownRowFrom(text)) << text;
    EXPECT_EQ(cli::knownRowFrom("48=-0.5"), (std::pair{48, -0.5}));
}

TEST_F(SurveyCommands, CheckPrintsWhatLooksWrong) {
    const std::string book = folder.write(
        "book.csv", "Chainage,\r\n,,,,1,,,,100,A\r\n00-000,,0,,,1.5,,,,\r\n00-000,,0,,,3.5,,,,\r\n");
    EXPECT_EQ(cli::check({book}, in, out, err), cli::Failed);
    EXPECT_EQ(out.str(), "row 3: error: The same point (the centre) was read in row 2\n"
                         "row 3: hint: Not closed: no known level at the end\n");
    out.str("");
    EXPECT_EQ(cli::check({testData("books/nptel-ex14-1.csv"), true, 3}, in, out, err), cli::Done);
    EXPECT_THAT(out.str(),
                testing::StartsWith(R"([{"row": 2, "kind": "hint", "rule": "above-staff", "text": )"
                                    R"("I.S. 3.745 is above the staff of 3 m"},)"));
    EXPECT_EQ(cli::check({folder / "none.csv"}, in, out, err), cli::Failed);
}

} // namespace
