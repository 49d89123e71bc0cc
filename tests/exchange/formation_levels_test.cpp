#include "exchange/formation_levels.h"

#include "held_database.h"
#include "road_fixture.h"

using exchange::TransferEnd;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

/// A road that has the chainage 00-000 with its centre and a left point.
class FormationTest : public RoadTest {
  protected:
    void SetUp() override {
        ASSERT_EQ(transfer("00-000,3.15,,,,,,,11.366|00-000,,0,,,,,,11.350"), TransferEnd::Done);
        frame.lblProj = road;
        desktop.boxes.clear();
        frame.Dsb();
        frame.chkFRL = true;
    }
    void TearDown() override { EXPECT_THAT(desktop.boxes, SizeIs(0)); }

    bool update(std::string_view rows) {
        EXPECT_THAT(desktop.boxes, SizeIs(0));
        keyRows(book.MSFG, splitAt(rows, '|'));
        return exchange::updateFormationLevels(book.MSFG, desktop, frame);
    }
    std::string longSection() const { return records(road, "LSect", {"Chn", "Grl", "Frl"}); }
    std::string points() const {
        return records(road, "CSect", {"Chn", "Side", "Oft", "Grl", "Frl", "Rmk", "calc"});
    }
};

TEST_F(FormationTest, SendingAddsWhatIsMissingAndMarksWhatWasThere) {
    EXPECT_EQ(transfer("00-000,3.15,,,,,,,12.100|"   // chainage and point there
                       "00-000,,,3.15,,,,,12.200|"   // chainage there, point missing
                       "CP,1,,,,,,,99|"              // never reaches the road
                       "cp,1,,,,,,,99|"              //
                       ",1,,,,,,,99|"                //
                       "CH 00-010,,0.0,,,,,,12.300|" // both missing, with letters before the chainage
                       "00-010,2|"                   // no level to send
                       "00-020,1,2,3,,,,,12|"        // the centre goes before the left point,
                       "00-020,1,,3,,,,,13"          // and that before the right one
                       ),
              TransferEnd::Sent);
    const char* longRecords = "00-000,11.35,12.2|00-010,12.3,12.3|00-020,12,13";
    EXPECT_EQ(longSection(), longRecords);
    EXPECT_EQ(points(), "00-000,L,3.15,11.366,12.1,GF,False|00-000,C,0,11.35,11.35,GG,False|"
                        "00-000,R,3.15,-,12.2,FF,False|00-010,C,0,-,12.3,FF,False|"
                        "00-020,C,2,-,12,FF,False|00-020,L,1,-,13,FF,False");
    EXPECT_EQ(desktop.statuses.back(), "5 formation levels sent to " + road + ".");
    EXPECT_EQ(book.notices.takeLine().text,
              "Row 2: the long section at 00-000 got the formation level 12.200 of R 3.15, and 1 more.");
    EXPECT_THAT(desktop.boxes, SizeIs(0));
    expectCleanDesk();

    EXPECT_EQ(transfer(), TransferEnd::Sent); // once more
    EXPECT_EQ(longSection(), longRecords);
    EXPECT_EQ(points(), "00-000,L,3.15,11.366,12.1,GF,False|00-000,C,0,11.35,11.35,GG,False|"
                        "00-000,R,3.15,-,12.2,GF,False|00-010,C,0,-,12.3,GF,False|"
                        "00-020,C,2,-,12,GF,False|00-020,L,1,-,13,GF,False");
}

TEST_F(FormationTest, UpdatingTouchesOnlyTheRoadThatIsThere) {
    for (int time = 0; time < 2; ++time) {
        EXPECT_TRUE(update(
            "00-000,,0,,,,,,12.000|"     // centre there
            "00-000,3.15,,,,,,,12.100|"  // left there
            "00-000,,,3.15,,,,,12.200|"  // right missing: added
            "00-010,,0,,,,,,12.300|"     // chainage missing: left alone
            "00-010,2, 0 ,2,,,,,12.400|" // a left point beside the centre is added, the right one is not
            "00-000,,0.0,,,,,,99|"       // no centre for this path
            "00-000,4|"                  // no level
            " CP ,5,,,,,,,99"));
        EXPECT_EQ(longSection(), "00-000,11.35,12");
        EXPECT_EQ(points(), "00-000,L,3.15,11.366,12.1,GG,False|00-000,C,0,11.35,12,GG,False|"
                            "00-000,R,3.15,-,12.2,-,False|00-010,L,2,-,12.4,-,False");
        EXPECT_TRUE(frame.visible) << "this path leaves the frame open";
    }
}

TEST_F(FormationTest, AnErrorStopsAndKeepsWhatWasSaved) {
    EXPECT_EQ(transfer("00-010,1,,,,,,,12|00-020,,,,,,,,13|00-030,1,,,,,,,14"), TransferEnd::Failed);
    const std::string before = "00-000,L,3.15,11.366,-,GG,False|00-000,C,0,11.35,11.35,GG,False|"
                               "00-010,L,1,-,12,FF,False";
    EXPECT_EQ(points(), before);
    EXPECT_EQ(longSection(), "00-000,11.35,11.35|00-010,12,12|00-020,13,13");
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("1 formation level sent to " + road + ", then: "));
    expectCleanDesk();

    EXPECT_FALSE(update("00-000,1,,,,,,,12|00-000,2,,,,,,,high|00-000,3,,,,,,,14"));
    EXPECT_EQ(points(), before + "|00-000,L,1,-,12,-,False");
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("Data type conversion error."));
}

TEST_F(FormationTest, ARoadThatCannotBeOpenedIsSaid) {
    std::filesystem::copy_file(home / "Site1.grl", home / "foreign.mdb");
    home.write("text.mdb", "no database");
    const HeldDatabase held(road, exchange::roadConnect);
    const std::pair<std::string, const char*> cases[] = {
        {"", "No formation levels sent: "},
        {home / "missing.mdb", "Could not find file"},
        {home / "no/folder/Road.mdb", "isn't a valid path"},
        {home / "foreign.mdb", "Not a valid password."},
        {home / "text.mdb", "Unrecognized database format"},
        {road, "file already in use"},
    };
    for (const auto& [path, words] : cases) {
        frame.lblProj = path;
        EXPECT_EQ(transfer("00-000,1,,,,,,,12"), TransferEnd::Failed) << path;
        EXPECT_THAT(desktop.statuses.back(), HasSubstr(words));
        expectCleanDesk();
        EXPECT_FALSE(update("00-000,1,,,,,,,12"));
        EXPECT_THAT(desktop.statuses.back(), HasSubstr(words));
    }
}

} // namespace
