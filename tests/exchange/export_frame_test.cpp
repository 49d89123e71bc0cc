#include "exchange/export_frame.h"

#include "scripted_desktop.h"

#include <gtest/gtest.h>

using exchange::ExportFrame;

TEST(ExportFrame, NameOptionsFillTheNameAndOtherEmptiesIt) {
    ExportFrame frame;
    const char* expected[] = {"S.T.B.T. to", "Constructing New Road From", "Improvements to Road From", ""};
    for (int index = 0; index < 4; ++index) {
        frame.txtName.text = "kept by nothing";
        frame.optName_Click(index);
        EXPECT_EQ(frame.txtName.text, expected[index]);
    }
}

TEST(ExportFrame, WidthOptionsComputeOnEveryClick) {
    const std::pair<const char*, const char*> cases[] = {{"7.5", "3.75"}, {"7", "3.5"},  {"12.25 m", "6.125"},
                                                         {"0.1", "0.05"}, {"wide", "0"}, {"", "0"}};
    ExportFrame frame;
    frame.optWTot_Click(); // nothing stands in the side boxes yet
    EXPECT_EQ(frame.txtTW.text, "0");
    for (const auto& [total, half] : cases) {
        frame.txtTW.text = total;
        frame.optWLR_Click();
        EXPECT_EQ(frame.txtLW.text, half) << total;
        EXPECT_EQ(frame.txtRW.text, half) << total;
        EXPECT_TRUE(frame.txtLW.enabled && frame.txtRW.enabled && !frame.txtTW.enabled);
        frame.txtLW.text = "7";
        frame.txtRW.text = "";
        frame.optWTot_Click();
        EXPECT_EQ(frame.txtTW.text, "7");
        EXPECT_TRUE(!frame.txtLW.enabled && !frame.txtRW.enabled && frame.txtTW.enabled);
    }
}

TEST(ExportFrame, GutterIsWorkedOutInBothModes) {
    const char* const noTop = "Gutter Top Width is invalid or Zero";
    const char* const narrow = "Top width of gutter is Less than Bottom width, Please check it";
    const struct {
        int mode;
        const char *inner, *outer, *top, *bottom, *depth;
        const char* after; // inner and outer slope, top width
        const char* message = "";
    } cases[] = {
        {1, "x", "y", "1.5", "0.5", "1", "0.50 0.50 1.5"},
        {1, "x", "y", "1.5", "1.5", "1", "0.00 0.00 1.5"},
        {1, "x", "y", "2", "0.5", "0.45", "1.67 1.67 2"},
        {1, "x", "y", "0", "0.5", "1", "x y 0", noTop},
        {1, "x", "y", "-1", "0.5", "1", "x y -1", noTop},
        {1, "x", "y", "wide", "0.5", "1", "x y wide", noTop},
        {1, "x", "y", "0.4", "0.5", "1", "x y 0.4", narrow},
        {1, "x", "y", "1.5", "0.5", "", "x y 1.5", "Division by zero"},
        {1, "x", "y", "0.5", "0.5", "0", "x y 0.5", "Division by zero"},
        {0, "0.5", "0.5", "?", "0.5", "1", "0.5 0.5 1.50"},
        {0, "0", "0", "?", "0.5", "1", "0 0 0.50"},
        {0, "0.25", "0.5", "?", "0.45", "0.35", "0.25 0.5 0.713"},
        {0, "0.5", "0.5", "?", "0.5", "", "0.5 0.5 0.50"},
        {0, "-0.1", "-1", "?", "0.5", "1", "-0.1 -1 ?", "Gutter Inner side is invalid or Zero"},
        {0, "0.5", "-1", "?", "0.5", "1", "0.5 -1 ?", "Gutter Outer side is invalid or Zero"},
    };
    for (const auto& each : cases) {
        ExportFrame frame;
        ScriptedDesktop desktop;
        frame.optGut_Click(each.mode);
        EXPECT_EQ(frame.txtTopW.enabled, each.mode == 1);
        EXPECT_EQ(frame.cboGIS.enabled && frame.cboGOS.enabled, each.mode == 0);
        frame.cboGIS.text = each.inner;
        frame.cboGOS.text = each.outer;
        frame.txtTopW.text = each.top;
        frame.txtWDrn.text = each.bottom;
        frame.txtDDrn.text = each.depth;
        frame.Cal(desktop);
        EXPECT_EQ(frame.cboGIS.text + " " + frame.cboGOS.text + " " + frame.txtTopW.text, each.after);
        EXPECT_EQ(desktop.boxes.empty() ? "" : desktop.boxes.front().text, each.message) << each.after;
        EXPECT_LE(desktop.boxes.size(), 1U);
    }
}

TEST(ExportFrame, TheHeadingFillsWhatNobodyTyped) {
    ExportFrame frame;
    sheet::Heading heading;
    heading.setText(*sheet::Heading::find("work"), "First road");
    heading.setText(*sheet::Heading::find("surveyor"), "N. N.");
    frame.takeHeading(heading);
    EXPECT_EQ(frame.txtName.text + '|' + frame.txtSurvey.text, "First road|N. N.");
    frame.txtSurvey.text = "typed";
    heading.setText(*sheet::Heading::find("work"), "Second road");
    heading.setText(*sheet::Heading::find("surveyor"), "M. M.");
    frame.takeHeading(heading);
    EXPECT_EQ(frame.txtName.text + '|' + frame.txtSurvey.text, "Second road|typed");
    frame.takeHeading({});
    EXPECT_EQ(frame.txtName.text + '|' + frame.txtSurvey.text, "|typed");
}
