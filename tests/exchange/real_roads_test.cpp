#include "exchange/transfer.h"

#include "command_output.h"
#include "field_book.h"
#include "jet/check.h"
#include "jet/database.h"
#include "road_fixture.h"

#include <charconv>
#include <sstream>

using testing::IsEmpty;

namespace {

/// A reading of the source book.
struct Reading {
    std::string chainage;
    std::string side;
    double offset;
    std::string level;
};

std::string shortest(double value) {
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

std::string single(const std::string& text) {
    return shortest(double(std::strtof(text.c_str(), nullptr)));
}

/// Cross-sections that were measured on real roads, transferred, and read by others.
class RealRoads : public RoadTest, public testing::WithParamInterface<const char*> {
  protected:
    void SetUp() override {
        loadBook(book, GetParam());
        for (const auto& row : bookRows(GetParam())) {
            if (row[0].empty() || row[0] == "CP" || row[0] == "Chainage") continue;
            const std::size_t col = !row[1].empty() ? 1 : !row[2].empty() ? 2 : 3;
            readings.push_back(
                {row[0], std::string(1, " LCR"[col]), std::strtod(row[col].c_str(), nullptr), row[8]});
        }
        exchange::showExportFrame(book, desktop, frame);
        ASSERT_EQ(exchange::transfer(book, desktop, frame), exchange::TransferEnd::Done)
            << testing::PrintToString(messages());
        road = roads + "/Site1/Road.mdb";
    }

    std::vector<Reading> readings;
    std::string road;
};

TEST_P(RealRoads, EveryReadingIsFoundByTheIndexes) {
    {
        dao::Database database = dao::OpenDatabase(road, exchange::roadConnect);
        dao::Recordset cSect = database.OpenRecordset("CSect");
        dao::Recordset lSect = database.OpenRecordset("LSect");
        cSect.setIndex("CSO");
        lSect.setIndex("Chn");
        int centres = 0;
        for (const Reading& r : readings) {
            cSect.Seek("=", {r.chainage, r.side, r.offset});
            ASSERT_FALSE(cSect.NoMatch()) << r.chainage << r.side << r.offset;
            EXPECT_EQ(cSect.Fields("Grl").value(), dao::Value(std::strtof(r.level.c_str(), nullptr)));
            if (r.side != "C") continue;
            ++centres;
            lSect.Seek("=", {r.chainage});
            ASSERT_FALSE(lSect.NoMatch()) << r.chainage;
            EXPECT_EQ(lSect.Fields("Frl").value(), dao::Value(std::strtof(r.level.c_str(), nullptr)));
        }
        EXPECT_EQ(cSect.RecordCount(), int(readings.size()));
        EXPECT_EQ(lSect.RecordCount(), centres);
    }
    jet::Database whole = jet::Database::open(road, "TarnVel");
    EXPECT_THAT(jet::check(whole), IsEmpty());
}

TEST_P(RealRoads, MdbExportSeesThemAll) {
    if (!outputOf("command -v mdb-export")) GTEST_SKIP() << "mdb-export is not here";
    std::ostringstream points, centres;
    for (const Reading& r : readings) {
        const auto printed = [](double value) {
            std::array<char, 32> text{};
            std::snprintf(text.data(), text.size(), "%.8g", value);
            return std::string(text.data());
        };
        const std::string level = printed(double(std::strtof(r.level.c_str(), nullptr)));
        points << r.chainage << '|' << r.side << '|' << shortest(r.offset) << '|' << level << '|'
               << (r.side == "C" ? level : "") << "|GG|0\n";
        if (r.side == "C") centres << r.chainage << '|' << level << '|' << level << '\n';
    }
    const auto exported = [this](const char* table) {
        return outputOf("mdb-export -H -Q -d '|' '" + road + "' " + table + " 2>/dev/null")
            .value_or("failed");
    };
    EXPECT_EQ(exported("CSect"), points.str());
    std::istringstream lSect(exported("LSect"));
    std::string firstThree;
    for (std::string line; std::getline(lSect, line);) {
        std::size_t end = 0;
        for (int field = 0; field < 3; ++field)
            end = line.find('|', end + 1);
        firstThree += line.substr(0, end) + '\n';
    }
    EXPECT_EQ(firstThree, centres.str());
    EXPECT_EQ(exported("dddd"),
              "Type here ProjectName - Shri. Dorvan Kessel\nP. W. Sub-Division\nP. W. Division\n$\n\n");
    EXPECT_EQ(exported("Plan"), "");
}

TEST_P(RealRoads, MdbReaderSeesThemAll) {
    const std::string modules = ZAVRO_NODE;
    if (!std::filesystem::exists(modules + "/node_modules/mdb-reader") || !outputOf("command -v node"))
        GTEST_SKIP() << "mdb-reader is not here";
    std::string expected = "[";
    for (const Reading& r : readings) {
        expected += std::string(expected.size() > 1 ? "," : "") + R"({"Chn":")" + r.chainage +
                    R"(","Side":")" + r.side + R"(","Oft":)" + shortest(r.offset) + R"(,"Grl":)" +
                    single(r.level) + R"(,"Frl":)" + (r.side == "C" ? single(r.level) : "null") +
                    R"(,"Rmk":"GG","calc":false})";
    }
    const auto dumped = [&](const char* table) {
        return outputOf("node '" ZAVRO_TESTS "/support/dump_table.mjs' '" + modules + "' '" + road + "' " +
                        table + " TarnVel")
            .value_or("failed");
    };
    EXPECT_EQ(dumped("CSect"), expected + "]\n");
    EXPECT_EQ(dumped("dddd"),
              "[{\"dddd\":\"Type here ProjectName - Shri. Dorvan Kessel\"},{\"dddd\":\"P. W. "
              "Sub-Division\"},{\"dddd\":\"P. W. Division\"},{\"dddd\":\"$\"},{\"dddd\":\"\"}]\n");
}

INSTANTIATE_TEST_SUITE_P(Books, RealRoads, testing::Values("tramo1-derived", "tramo1-xsec", "wheatley-xsec"),
                         [](const auto& name) {
                             std::string plain = name.param;
                             std::erase(plain, '-');
                             return plain;
                         });

} // namespace
