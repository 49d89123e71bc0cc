#include "drawing/section_drawings.h"
#include "drawing/sheets.h"
#include "labels.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using namespace drawing;
using testing::ElementsAre;

std::vector<GroundPlace> hills(int count, double step) {
    std::vector<GroundPlace> ground;
    for (int k = 0; k < count; ++k)
        ground.push_back({k * step, 100 + 30 * std::sin(k * 0.05) + (k == count / 2 ? 4 : 0)});
    return ground;
}

TEST(Figures, AsTexts) {
    EXPECT_EQ(scaleText({1000, 100}) + "|" + scaleText({200, 200}) + "|" + exaggerationText(2.5) + "|" +
                  exaggerationText(10),
              "1:1000 by 1:100|1:200|V x2.5|V x10");
    EXPECT_EQ(chainageText(1250) + "|" + chainageText(5.25) + "|" + chainageText(999.9999) + "|" +
                  offsetText(-3.15) + "|" + offsetText(0),
              "01-250|00-005.25|01-000|-3.15|0");
    EXPECT_EQ(datumBelow(11.35, 10), 10); // 1:100, so whole metres
    EXPECT_EQ(datumBelow(10.35, 10), 9);  // less than 5 mm above 10
    EXPECT_EQ(datumBelow(-0.2, 5), -2);   // 1:200
}

// Figures that would touch are dropped, but never the first, the last or a turn, which move aside.
TEST(Labels, KeepWhatMatters) {
    const std::vector<double> x{0, 1, 2, 10, 11, 12, 13, 20, 29, 30};
    const std::vector<double> y{0, 1, 2, 9, 12, 9, 9.1, 9.2, 8, 8};
    const auto labels = chooseLabels(x, y, 3);
    std::vector<std::size_t> points;
    for (const Label& label : labels)
        points.push_back(label.point);
    EXPECT_THAT(points, testing::IsSupersetOf({0U, 4U, 9U}));
    for (std::size_t k = 1; k < labels.size(); ++k)
        EXPECT_GE(labels[k].x - labels[k - 1].x, 3 - 1e-9) << k;
    // A saw whose every tooth is a turn: as many as there is room for.
    std::vector<double> teeth;
    std::vector<double> saw;
    for (int k = 0; k < 1000; ++k) {
        teeth.push_back(k * 0.1);
        saw.push_back(k % 2 * (k % 100 == 51 ? 9 : 1));
    }
    const auto few = chooseLabels(teeth, saw, 3);
    EXPECT_GT(few.size(), 15U);
    EXPECT_LE(few.size(), 34U);
    EXPECT_NEAR(few.back().x, teeth.back(), 1e-9);
}

TEST(Profile, ThinnedWithoutLosingAPeak) {
    const auto ground = hills(100000, 0.1);
    const auto few = thinned(ground, 10);
    EXPECT_LT(few.size(), 4100U);
    const auto level = [](const GroundPlace& at) { return at.level; };
    EXPECT_EQ(std::ranges::max(few, {}, level).level, std::ranges::max(ground, {}, level).level);
    EXPECT_EQ(std::ranges::min(few, {}, level).level, std::ranges::min(ground, {}, level).level);
    EXPECT_TRUE(std::ranges::is_sorted(few, {}, &GroundPlace::along));
    EXPECT_EQ(thinned(ground, 0.05).size(), ground.size());
}

/// Every point of `ground` lies on a ground line of the sheets at the place that the scale says.
void expectTrue(const Sheets& sheets, const std::vector<GroundPlace>& ground, Scale scale,
                const Paper& paper) {
    std::size_t drawn = 0;
    for (int k = 0; k < sheets.count(); ++k) {
        const DisplayList list = sheets.sheet(k);
        const Box box = list.bounds();
        EXPECT_GE(box.left, paper.margin - 1e-9);
        EXPECT_GE(box.bottom, paper.margin - 1e-9);
        EXPECT_LE(box.right, paper.width - paper.margin + 1e-9);
        EXPECT_LE(box.top, paper.height - paper.margin + 1e-9);
        for (const Polyline& line : list.polylines) {
            if (line.layer != Layer::Ground) continue;
            for (std::size_t at = 1; at < line.places.size(); ++at, ++drawn) {
                ASSERT_LT(drawn + 1, ground.size());
                EXPECT_NEAR(line.places[at].x - line.places[at - 1].x,
                            (ground[drawn + 1].along - ground[drawn].along) * 1000 / scale.horizontal, 1e-6);
                EXPECT_NEAR(line.places[at].y - line.places[at - 1].y,
                            (ground[drawn + 1].level - ground[drawn].level) * 1000 / scale.vertical, 1e-6);
            }
        }
    }
    EXPECT_EQ(drawn + 1, ground.size());
}

TEST(LongSheets, AreTrueToScaleAndStepTheDatum) {
    const auto ground = hills(400, 10);
    for (const Paper& paper : {a4.across(), letter}) {
        const LongSheets sheets(ground, {1000, 100}, paper, {"Work", "Road"});
        EXPECT_GT(sheets.count(), 10);
        expectTrue(sheets, ground, {1000, 100}, paper);
        std::size_t datums = 0;
        for (const Text& text : sheets.sheet(0).texts)
            datums += text.text.starts_with("Datum ");
        EXPECT_GT(datums, 1U);
    }
    const LongSheets cliff({{0, 0}, {10, 50}, {20, 51}}, {1000, 100}, a4.across(), {});
    EXPECT_EQ(cliff.scale(), (Scale{1000, 800}));
    EXPECT_LE(cliff.sheet(0).bounds().top, a4.across().height - a4.margin);
    // Gaps longer than a sheet, and a single point.
    EXPECT_EQ(LongSheets({{0, 1}, {5000, 2}, {5010, 2}}, {}, a4, {}).count(), 2);
    EXPECT_EQ(LongSheets({}, {}, a4, {}).count(), 0);
}

TEST(CrossSheets, StandInColumnsFromTheBottomLeft) {
    std::vector<CrossSection> sections(20, {0, {{-5, 100}, {0, 101}, {6, 99.5}}});
    for (std::size_t k = 0; k < sections.size(); ++k)
        sections[k].chainage = static_cast<double>(k) * 20;
    sections.push_back({400, {{-60, 100}, {60, 101}}}); // wider than the paper at 1:100
    sections.push_back({410, {}});
    const CrossSheets sheets(sections, {100, 100}, a4, {});
    EXPECT_EQ(sheets.shrunk(), 1);
    EXPECT_GT(sheets.count(), 1);
    std::vector<Place> starts;
    std::size_t lines = 0;
    for (int k = 0; k < sheets.count(); ++k)
        for (const Polyline& line : sheets.sheet(k).polylines) {
            if (line.layer != Layer::Ground) continue;
            if (k == 0) starts.push_back(line.places.front());
            ++lines;
            EXPECT_NEAR(line.places.back().x - line.places.front().x, lines > 20 ? 120 : 110, 1e-9);
        }
    EXPECT_EQ(lines, 21U);
    ASSERT_GT(starts.size(), 2U);
    EXPECT_GT(starts[1].y, starts[0].y); // upwards
    EXPECT_EQ(starts[1].x, starts[0].x);
    const Box box = sheets.sheet(sheets.count() - 1).bounds();
    EXPECT_LE(box.right, a4.width - a4.margin + 1e-9);
}

} // namespace
