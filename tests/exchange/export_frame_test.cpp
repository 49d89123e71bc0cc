#include "exchange/export_frame.h"

#include "scripted_desktop.h"

#include <gtest/gtest.h>

using exchange::ExportFrame;

TEST(ExportFrame, StartsAsDesigned) {
    const ExportFrame frame;
    EXPECT_FALSE(frame.visible);
    EXPECT_EQ(frame.width, ExportFrame::Total);
    EXPECT_EQ(frame.optGut, ExportFrame::Slope);
    EXPECT_EQ(frame.optName, -1);
    const std::pair<const exchange::TextBox&, exchange::TextBox> boxes[] = {
        {frame.txtName, {"", true}},     {frame.txtSubDiv, {"P. W. Sub-Division", true}},
        {frame.txtSurvey, {"", true}},   {frame.txtDiv, {"P. W. Division", true}},
        {frame.txtLW, {"", false}},      {frame.txtRW, {"", false}},
        {frame.txtTW, {"7.5", true}},    {frame.txtCrgWid, {"3.75", true}},
        {frame.cboFill, {"2.0", true}},  {frame.cboCut, {"1.0", true}},
        {frame.txtTopW, {"1.5", false}}, {frame.cboGIS, {"0.5", true}},
        {frame.cboGOS, {"0.5", true}},   {frame.txtDDrn, {"", true}},
        {frame.txtWDrn, {"0.5", true}},
    };
    int number = 0;
    for (const auto& [box, designed] : boxes) {
        EXPECT_EQ(box.text, designed.text) << "box " << number;
        EXPECT_EQ(box.enabled, designed.enabled) << "box " << number;
        ++number;
    }
}

TEST(ExportFrame, ShowingItLocksTheCommandsAndHidingFreesThem) {
    ExportFrame frame;
    frame.Dsb();
    EXPECT_TRUE(frame.visible);
    EXPECT_FALSE(frame.commandsEnabled);
    frame.Enb();
    EXPECT_FALSE(frame.visible);
    EXPECT_TRUE(frame.commandsEnabled);
}

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
    struct Case {
        const char *total, *half;
    } cases[] = {{"7.5", "3.75"}, {"7", "3.5"},  {"12.25 m", "6.125"},
                 {"0.1", "0.05"}, {"wide", "0"}, {"", "0"}};
    for (const Case& c : cases) {
        ExportFrame frame;
        frame.txtTW.text = c.total;
        frame.optWLR_Click();
        EXPECT_EQ(frame.txtLW.text, c.half) << c.total;
        EXPECT_EQ(frame.txtRW.text, c.half) << c.total;
        EXPECT_TRUE(frame.txtLW.enabled && frame.txtRW.enabled && !frame.txtTW.enabled);
        frame.txtLW.text = "7";
        frame.txtRW.text = "";
        frame.optWTot_Click();
        EXPECT_EQ(frame.txtTW.text, "7");
        EXPECT_TRUE(!frame.txtLW.enabled && !frame.txtRW.enabled && frame.txtTW.enabled);
    }
    ExportFrame again;
    again.optWTot_Click(); // nothing stands in the side boxes yet
    EXPECT_EQ(again.txtTW.text, "0");
}

TEST(ExportFrame, GutterModeDecidesWhichBoxesAreLive) {
    ExportFrame frame;
    frame.optGut_Click(1);
    EXPECT_TRUE(frame.txtTopW.enabled && !frame.cboGIS.enabled && !frame.cboGOS.enabled);
    frame.optGut_Click(0);
    EXPECT_TRUE(!frame.txtTopW.enabled && frame.cboGIS.enabled && frame.cboGOS.enabled);
}

TEST(ExportFrame, GutterIsWorkedOutInBothModes) {
    struct Case {
        int mode;
        const char *inner, *outer, *top, *bottom, *depth;
        const char *innerAfter, *outerAfter, *topAfter, *message;
    } cases[] = {
        {1, "x", "y", "1.5", "0.5", "1", "0.50", "0.50", "1.5", ""},
        {1, "x", "y", "1.5", "1.5", "1", "0.00", "0.00", "1.5", ""},
        {1, "x", "y", "2", "0.5", "0.45", "1.67", "1.67", "2", ""},
        {1, "x", "y", "0", "0.5", "1", "x", "y", "0", "Gutter Top Width is invalid or Zero"},
        {1, "x", "y", "-1", "0.5", "1", "x", "y", "-1", "Gutter Top Width is invalid or Zero"},
        {1, "x", "y", "wide", "0.5", "1", "x", "y", "wide", "Gutter Top Width is invalid or Zero"},
        {1, "x", "y", "0.4", "0.5", "1", "x", "y", "0.4",
         "Top width of gutter is Less than Bottom width, Please check it"},
        {1, "x", "y", "1.5", "0.5", "", "x", "y", "1.5", "Division by zero"},
        {1, "x", "y", "0.5", "0.5", "0", "x", "y", "0.5", "Division by zero"},
        {0, "0.5", "0.5", "?", "0.5", "1", "0.5", "0.5", "1.50", ""},
        {0, "0", "0", "?", "0.5", "1", "0", "0", "0.50", ""},
        {0, "0.25", "0.5", "?", "0.45", "0.35", "0.25", "0.5", "0.713", ""},
        {0, "0.5", "0.5", "?", "0.5", "", "0.5", "0.5", "0.50", ""},
        {0, "-0.1", "-1", "?", "0.5", "1", "-0.1", "-1", "?", "Gutter Inner side is invalid or Zero"},
        {0, "0.5", "-1", "?", "0.5", "1", "0.5", "-1", "?", "Gutter Outer side is invalid or Zero"},
    };
    int number = 0;
    for (const Case& c : cases) {
        ExportFrame frame;
        ScriptedDesktop desktop;
        frame.optGut_Click(c.mode);
        frame.cboGIS.text = c.inner;
        frame.cboGOS.text = c.outer;
        frame.txtTopW.text = c.top;
        frame.txtWDrn.text = c.bottom;
        frame.txtDDrn.text = c.depth;
        frame.Cal(desktop);
        EXPECT_EQ(frame.cboGIS.text, c.innerAfter) << "case " << number;
        EXPECT_EQ(frame.cboGOS.text, c.outerAfter) << "case " << number;
        EXPECT_EQ(frame.txtTopW.text, c.topAfter) << "case " << number;
        EXPECT_EQ(desktop.boxes.empty() ? "" : desktop.boxes.front().text, c.message) << "case " << number;
        EXPECT_LE(desktop.boxes.size(), 1U);
        ++number;
    }
}

TEST(ExportFrame, SelectKeepsTheChosenRoadWhenCancelled) {
    ExportFrame frame;
    ScriptedDesktop desktop;
    desktop.files = {"/roads/Site1/Road.mdb", std::nullopt};
    frame.cmdSel_Click(desktop);
    EXPECT_EQ(frame.lblProj, "/roads/Site1/Road.mdb");
    frame.cmdSel_Click(desktop);
    EXPECT_EQ(frame.lblProj, "/roads/Site1/Road.mdb");
    EXPECT_EQ(desktop.fileDialogs, (std::vector{desktop::FileDialog::Open, desktop::FileDialog::Open}));
}
