#include "command_output.h"
#include "jet/check.h"
#include "jet/database.h"
#include "road_fixture.h"

#include <array>

namespace {

std::string shown(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.8g", value);
    return text.data();
}

/// Cross-sections that were measured on real roads, transferred, and read through the indexes and by another
/// program.
class RealRoads : public RoadTest, public testing::WithParamInterface<const char*> {};

TEST_P(RealRoads, HoldEveryReading) {
    loadBook(book, GetParam());
    exchange::showExportFrame(book, desktop, frame);
    ASSERT_EQ(transfer(), exchange::TransferEnd::Done) << testing::PrintToString(messages());
    std::string points, centres;
    {
        dao::Database database = dao::OpenDatabase(road, exchange::roadConnect);
        dao::Recordset cSect = database.OpenRecordset("CSect");
        cSect.setIndex("CSO");
        int readings = 0;
        for (const auto& row : bookRows(GetParam())) {
            if (row[0].empty() || row[0] == "CP" || row[0] == "Chainage") continue;
            const std::size_t col = !row[1].empty() ? 1 : !row[2].empty() ? 2 : 3;
            const std::string side(1, " LCR"[col]);
            const double offset = std::strtod(row[col].c_str(), nullptr);
            const float single = std::strtof(row[8].c_str(), nullptr);
            cSect.Seek("=", {row[0], side, offset});
            ASSERT_FALSE(cSect.NoMatch()) << row[0] << side << offset;
            EXPECT_EQ(cSect.Fields("Grl").value(), dao::Value(single));
            const std::string level = shown(double{single});
            points += row[0] + "|" + side + "|" + shown(offset) + "|" + level + "|" +
                      (side == "C" ? level : "") + "|GG|0\n";
            if (side == "C") centres += row[0] + "|" + level + "|" + level + "\n";
            ++readings;
        }
        EXPECT_EQ(cSect.RecordCount(), readings);
    }
    jet::Database whole = jet::Database::open(road, "TarnVel");
    EXPECT_THAT(jet::check(whole), testing::IsEmpty());

    if (!outputOf("command -v mdb-export")) GTEST_SKIP() << "mdb-export is not here";
    const auto exported = [this](const char* table, const char* fields) {
        return outputOf("mdb-export -H -Q -d '|' '" + road + "' " + table + " 2>/dev/null | cut -d '|' -f " +
                        fields)
            .value_or("failed");
    };
    EXPECT_EQ(exported("CSect", "1-"), points);
    EXPECT_EQ(exported("LSect", "1-3"), centres);
    EXPECT_EQ(exported("dddd", "1-"),
              "Type here ProjectName - Shri. Dorvan Kessel\nP. W. Sub-Division\nP. W. Division\n$\n\n");
    EXPECT_EQ(exported("Plan", "1-"), "");
}

INSTANTIATE_TEST_SUITE_P(Books, RealRoads, testing::Values("tramo1-derived", "tramo1-xsec", "wheatley-xsec"),
                         [](const auto& name) {
                             std::string plain = name.param;
                             std::erase(plain, '-');
                             return plain;
                         });

} // namespace
