#include "exchange/dxf.h"
#include "exchange/landxml.h"
#include "project/book.h"

#include "basic/numbers.h"
#include "command_output.h"
#include "dxf_writer.h"
#include "field_book.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <cstdio>

namespace {

using namespace exchange;
using testing::ElementsAre;
using testing::HasSubstr;

struct Exported : testing::Test {
    TempFolder folder;
    project::Book book;
    SectionExport sent;

    std::string said(const SectionExporter& exporter, const std::string& path) {
        survey::Sections sections(book.MSFG);
        sent = exportSections(sections, exporter, path);
        return describe(sent, path);
    }
};

// The figures that another program reads out of the drawing are the levels of the book.
TEST_F(Exported, DxfHoldsTheLevels) {
    if (!outputOf("/usr/bin/python3 -c 'import ezdxf' 2>&1"))
        GTEST_SKIP() << "python3-ezdxf is not installed";
    loadBook(book, "tramo1-xsec");
    const std::string path = folder / "road.dxf";
    DxfOptions options;
    options.title = "100%% \u00d6\u0141 ^x";
    said(DxfExporter(options), path);
    ASSERT_TRUE(sent.done());
    const auto read = outputOf("/usr/bin/python3 '" ZAVRO_TEST_SCRIPTS "/read_dxf.py' '" + path + "'");
    ASSERT_TRUE(read);
    EXPECT_THAT(*read, testing::StartsWith("errors 0 fixes 0\n"));
    EXPECT_THAT(*read, HasSubstr("text TEXT 100% % \u00d6\\U+0141 ^x"));
    EXPECT_THAT(*read, HasSubstr("text TEXT 1:1000 by 1:100, V x10\n"));

    survey::Sections sections(book.MSFG);
    std::vector<survey::GroundPoint> expected = sections.longSection();
    expected.insert(expected.end(), sections.points().begin(), sections.points().end());
    std::vector<drawing::Place> origins; // x, and the level of y = 0
    std::vector<drawing::Place> vertices;
    std::vector<std::size_t> lineOf;
    std::size_t lines = 0;
    for (const std::string& each : splitAt(*read, '\n')) {
        double x = 0;
        double y = 0;
        double datum = 0;
        if (std::sscanf(each.c_str(), "text TEXT X %lf Y %lf = %*s Datum %lf", &x, &y, &datum) == 3) {
            const double times = origins.empty() ? 10 : 1;
            origins.push_back({x, datum - y / times});
        } else if (each == "line") {
            ++lines;
        } else if (std::sscanf(each.c_str(), "vertex %lf %lf", &x, &y) == 2) {
            vertices.push_back({x, y});
            lineOf.push_back(lines - 1);
        }
    }
    ASSERT_EQ(lines, 43U);
    ASSERT_EQ(origins.size(), lines);
    ASSERT_EQ(vertices.size(), expected.size());
    for (std::size_t k = 0; k < vertices.size(); ++k) {
        const drawing::Place origin = origins[lineOf[k]];
        const bool isLong = lineOf[k] == 0;
        EXPECT_NEAR(origin.y + vertices[k].y / (isLong ? 10 : 1), expected[k].level, 0.001) << k;
        EXPECT_NEAR(vertices[k].x - origin.x, isLong ? expected[k].chainage : expected[k].offset + 3.15,
                    0.001);
    }
}

TEST_F(Exported, DxfTexts) {
    const std::pair<const char*, const char*> cases[] = {{"plain", "plain"},
                                                         {"\u00fc\u20ac", "\xFC\x80"},
                                                         {"\u0142\u4e2d", "\\U+0142\\U+4E2D"},
                                                         {"\U0001F600", "\\U+D83D\\U+DE00"},
                                                         {"%%%d^\t\x7f", "% % %d^   "}};
    for (const auto& [text, written] : cases)
        EXPECT_EQ(dxfText(text), written);
}

TEST_F(Exported, LandXmlHoldsEveryPointAndKeepsToTheSchema) {
    for (const char* name : {"tramo1-xsec", "wheatley-xsec", "tramo1-derived"}) {
        loadBook(book, name);
        const std::string path = folder / "road.xml";
        said(LandXmlExporter({"A & B <\"x\">", std::chrono::sys_days{std::chrono::year{2024} / 2 / 29}}),
             path);
        ASSERT_TRUE(sent.done());
        const std::string xml = folder.read("road.xml");
        EXPECT_THAT(xml, HasSubstr("date=\"2024-02-29\" time=\"00:00:00\""));
        survey::Sections sections(book.MSFG);
        EXPECT_EQ(sent.crossPoints, sections.points().size());
        for (const survey::GroundPoint& point : sections.points()) {
            const std::size_t at = xml.find("<CrossSect sta=\"" + basic::plainText(point.chainage) + "\">");
            ASSERT_NE(at, std::string::npos);
            const std::string list = xml.substr(at, xml.find("</CrossSect>", at) - at);
            EXPECT_THAT(list,
                        HasSubstr(basic::plainText(point.offset) + " " + basic::plainText(point.level)));
        }
        const std::string schema = ZAVRO_LANDXML_SCHEMA;
        if (schema.empty()) continue;
        EXPECT_TRUE(outputOf("xmllint --noout --schema '" + schema + "/LandXML-1.2.xsd' '" + path + "' 2>&1"))
            << name;
    }
}

TEST_F(Exported, TellsWhatIsLeftOutOrMissing) {
    const std::string path = folder.write("old.xml", "old");
    const std::string shut = folder / "no/where.xml";
    const struct {
        std::vector<std::string> rows;
        std::string path;
        const char* said;
    } cases[] = {
        {{",,,,1,,,,100", "00-000,,0,,,1.5", "00-010,,0,,,1.4"}, path, "Cal first: 2 readings have no level"},
        {{",,,,1,,,,100", ",,0,,,1.5,,,99"}, path, "No sections: "},
        {{"00-000,,0,,,1.5,,,99"}, path, "No sections: "}, // a single point makes no line
        {{"00-000,,0,,,1.5,,,99", "00-010,,0,,,1,,,99"}, shut, "Path not found"},
        {{"00-000,,0,,,1.5,,,99", "00-000,2,,,,1,,,99", "00-010,,0,,,1,,,98", "00-020,3,,,,1"},
         folder / "new.xml",
         "Long section of 2 points and 1 cross-section of 2 points written"},
    };
    for (const auto& each : cases) {
        keyRows(book.MSFG, each.rows);
        EXPECT_THAT(said(LandXmlExporter({}), each.path), HasSubstr(each.said));
    }
    EXPECT_EQ(folder.read("old.xml"), "old");
    EXPECT_EQ(sent.leftOut, 1U);
    EXPECT_EQ(sent.withoutLevel, 1);
}

} // namespace
