#include "entry/entry_settings.h"

#include "temp_folder.h"

#include "basic/files.h"

#include "entry_fixture.h"
#include "error_number.h"

#include <sys/stat.h>

namespace {

using Offsets = std::vector<std::string>;

struct EntrySettings : Entry {
    TempFolder folder;
    sheet::Settings& settings = book.settings;

    EntrySettings() { desktop.folder = folder.path(); }
    int errorOfAccept() {
        return errorOf([&] { entry::acceptSettings(book, desktop); });
    }
};

TEST_F(EntrySettings, OffsetsAreKeptInOrder) {
    using entry::OffsetSide;
    for (const auto& [text, side] : {std::pair{"4", OffsetSide::Both},
                                     {"2.5", OffsetSide::Both},
                                     {"100", OffsetSide::Left},
                                     {" 10 m", OffsetSide::Right},
                                     {"3", OffsetSide::Left}})
        EXPECT_TRUE(entry::addOffset(settings, desktop, text, side));
    Offsets kept{"L02.50", "L03.00", "L04.00", "L100.00", "R02.50", "R04.00", "R10.00"};
    EXPECT_EQ(settings.lstOft, kept);
    EXPECT_TRUE(desktop.boxes.empty());
    for (const char* text : {"", "0", "x", "1e999"})
        EXPECT_FALSE(entry::addOffset(settings, desktop, text, OffsetSide::Both));
    EXPECT_EQ(desktop.boxes.at(2).text, "Enter Offset Distance 1st...");
    EXPECT_EQ(desktop.boxes.at(3).text, "Overflow");
    entry::removeOffset(settings, desktop, -1);
    EXPECT_EQ(desktop.boxes.at(4).text, "Select Reading from list 1st...");
    EXPECT_EQ(settings.lstOft, kept);
    entry::removeOffset(settings, desktop, 1);
    kept.erase(kept.begin() + 1);
    EXPECT_EQ(settings.lstOft, kept);
}

TEST_F(EntrySettings, OkFillsTheOffsetArrays) {
    const auto first = [](const sheet::OffsetArray& offsets) {
        return std::vector<float>(offsets.begin(), offsets.begin() + 4);
    };
    settings.lstOft = {"L02.00", "L04.00", "R03.00"};
    entry::acceptSettings(book, desktop);
    EXPECT_EQ(first(book.LeftOffsets), (std::vector<float>{2, 2, 4, 0}));
    EXPECT_EQ(first(book.RightOffsets), (std::vector<float>{1, 3, 0, 0}));
    // Out of order, as a file may hold them: left ends at the first R, gaps keep what they held.
    book.RightOffsets[2] = 77;
    settings.lstOft = {"L02.00", "R02.00", "L04.00", "R04.00"};
    entry::acceptSettings(book, desktop);
    EXPECT_EQ(first(book.LeftOffsets), (std::vector<float>{1, 2, 4, 0}));
    EXPECT_EQ(first(book.RightOffsets), (std::vector<float>{3, 2, 77, 4}));
    settings.lstOft.clear();
    entry::acceptSettings(book, desktop);
    EXPECT_EQ(book.LeftOffsets[0] + book.RightOffsets[0], 0);
}

TEST_F(EntrySettings, TwoHundredOffsetsASide) {
    for (const char side : {'L', 'R'}) {
        settings.lstOft.assign(200, side + std::string("01.00"));
        EXPECT_EQ(errorOfAccept(), 0);
        const auto before = book.LeftOffsets;
        settings.lstOft.push_back(side + std::string("09.00"));
        EXPECT_EQ(errorOfAccept(), basic::SubscriptOutOfRange);
        EXPECT_EQ(book.LeftOffsets, before); // nothing is half done
        EXPECT_EQ(basic::readLines(folder / "ZavroGRL.LVX").size(), 207U);
    }
}

TEST_F(EntrySettings, FileHoldsWhatWasSet) {
    settings = {"12.5", "Right", 1, true, true, false, true, true, "0.5 \u00fc", {"L02.50", "R10.00"}};
    entry::acceptSettings(book, desktop);
    const std::string written = folder.read("ZavroGRL.LVX");
    EXPECT_EQ(written,
              "0112.5\r\n021\r\n031\r\n040\r\n051\r\n510.5 \u00fc\r\n061\r\n61L02.50\r\n61R10.00\r\n");
    book.settings = {};
    entry::readSettings(settings, desktop);
    EXPECT_EQ(settings.cboSide, "Right");
    EXPECT_FALSE(settings.chkAuto); // is not stored
    entry::acceptSettings(book, desktop);
    EXPECT_EQ(folder.read("ZavroGRL.LVX"), written);
}

TEST_F(EntrySettings, FileIsReadUpToWhatDoesNotFit) {
    const std::tuple<const char*, const char*, int, std::size_t, bool> cases[] = {
        {"0125\r\n61R05.00\r\n", "25", 0, 1, false},
        {"0125\n99x\nL02.00\nR02.00\n\n61L01.00\n61x\n61", "25", 0, 3, false},
        {"01\n021\n", "", 1, 0, false},
        {"02-1\n0130\n", "30", -1, 0, false},
        {"0125\n022\n61L02.00\n", "25", 0, 0, true},
        {"0125\n03x\n61L02.00\n", "25", 0, 0, true},
        {"0125\n06\n61L02.00\n", "25", 0, 0, true},
        {"0125\n0499999\n61L02.00\n", "25", 0, 0, true},
        {"042\n61L02.00\n", "10", 0, 1, false},
        {" 125\n", "25", 0, 0, false},
        {"\x80\xff\xfe\n61L\x80\n", "10", 0, 1, false},
    };
    for (const auto& [file, increment, side, offsets, stopped] : cases) {
        SCOPED_TRACE(file);
        folder.write("ZavroGRL.LVX", file);
        desktop.statuses.clear();
        sheet::Settings read;
        entry::readSettings(read, desktop);
        EXPECT_EQ(read.cboIncr, increment);
        EXPECT_EQ(read.cboSideIndex, side);
        EXPECT_EQ(read.lstOft.size(), offsets);
        EXPECT_EQ(desktop.statuses.size(), stopped ? 1U : 0U);
        EXPECT_FALSE(read.chkFinal);
    }
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(EntrySettings, SideWithoutAnItemEmptiesTheBox) {
    folder.write("zavrogrl.lvx", "02-1\r\n"); // found whatever its case
    entry::readSettings(settings, desktop);
    EXPECT_EQ(settings.cboSide, "");
    EXPECT_FALSE(settings.startsLeft());
    entry::acceptSettings(book, desktop);
    EXPECT_EQ(folder.read("zavrogrl.lvx").substr(0, 10), "0110\r\n02-1");
}

TEST_F(EntrySettings, FileThatCannotBeWritten) {
    settings.lstOft = {"L02.00"};
    chmod(folder.write("ZavroGRL.LVX", "0199").c_str(), 0444);
    EXPECT_EQ(errorOfAccept(), basic::PathFileAccessError);
    EXPECT_EQ(folder.read("ZavroGRL.LVX"), "0199");
    EXPECT_EQ(book.LeftOffsets[1], 2); // entry goes on with them all the same
}

} // namespace
