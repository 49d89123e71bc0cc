#pragma once

#include "desktop/desktop.h"
#include "sheet/heading.h"

#include <array>
#include <string>
#include <string_view>

namespace exchange {

/// A text or combo box of the frame.
struct TextBox {
    std::string text;
    bool enabled = true;
};

/// Everything that fExport shows: each member is named after its control and starts with the text it is
/// designed with. The window mirrors it and runs these handlers; widths, depths and offsets are metres,
/// slopes the X of X : 1.
struct ExportFrame {
    enum Width { Sides, Total };
    enum GutterMode { Slope, TopWidth };

    static constexpr std::array<const char*, 4> nameOptions{"S.T.B.T. to", "Constructing New Road From",
                                                            "Improvements to Road From", "Other"};
    static constexpr std::array<const char*, 6> fillSlopes{"0.5", "1.0", "1.5", "2.0", "2.5", "3.0"};
    static constexpr std::array<const char*, 6> cutSlopes{"0.1", "0.25", "0.5", "1.0", "1.5", "2.0"};
    static constexpr std::array<const char*, 4> gutterSlopes{"0.1", "0.25", "0.5", "1.0"};

    TextBox txtName;
    TextBox txtSubDiv{"P. W. Sub-Division"};
    TextBox txtDiv{"P. W. Division"};
    TextBox txtSurvey;
    TextBox txtLW{"", false};
    TextBox txtRW{"", false};
    TextBox txtTW{"7.5"};
    TextBox txtCrgWid{"3.75"};
    TextBox cboFill{"2.0"};
    TextBox cboCut{"1.0"};
    TextBox txtTopW{"1.5", false};
    TextBox cboGIS{"0.5"};
    TextBox cboGOS{"0.5"};
    TextBox txtDDrn;
    TextBox txtWDrn{"0.5"};
    int optName = -1;          ///< chosen name option; -1 for none
    Width width = Total;       ///< optWLR or optWTot
    GutterMode optGut = Slope; ///< index of the chosen optGut
    bool chkLG = false;
    bool chkRg = false;
    bool chkFRL = false;
    std::string lblProj; ///< the road database that formation levels go to

    bool sendsAdjusted = false; ///< R.Level. holds adjusted levels, which go as they are

    std::string madeFolder; ///< the project folder that the last transfer made

    bool visible = false;
    bool commandsEnabled = true; ///< cmdDel, cmdIns, cmdList, cmdNew, cmdOpen, cmdSave, cmdCal and cmdExit
    std::string_view focus; ///< the control that asks for the focus; the window takes it and empties this

    /// Puts work and surveyor into txtName and txtSurvey, but never over a text that was typed.
    void takeHeading(const sheet::Heading& heading);

    void Dsb(); ///< shows the frame and disables the eight buttons
    void Enb(); ///< the reverse

    void optName_Click(int index);
    void optWLR_Click();
    void optWTot_Click();
    void optGut_Click(int index);
    void cmdSel_Click(desktop::Desktop& desktop);

    /// Works out the gutter's slopes from its top width or the other way round; run when cboGIS, cboGOS or
    /// txtTopW loses the focus. What does not fit is said in a message box and changes nothing;
    /// false then.
    bool Cal(desktop::Desktop& desktop);

  private:
    std::string m_headingName;   ///< what a heading put into txtName
    std::string m_headingSurvey; ///< and into txtSurvey
    void enableWidths();
    bool calSlopes(desktop::Desktop& desktop);
    bool calTopWidth(desktop::Desktop& desktop);
};

} // namespace exchange
