#include "export_frame.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"

namespace exchange {

using basic::val;

void ExportFrame::takeHeading(const sheet::Heading& heading) {
    const auto put = [](std::string& box, std::string& before, const std::string& text) {
        if (box.empty() || box == before) box = before = text;
    };
    put(txtName.text, m_headingName, heading.text("work"));
    put(txtSurvey.text, m_headingSurvey, heading.text("surveyor"));
}

void ExportFrame::Dsb() {
    visible = true;
    commandsEnabled = false;
}

void ExportFrame::Enb() {
    visible = false;
    commandsEnabled = true;
}

void ExportFrame::optName_Click(int index) {
    optName = index;
    const std::size_t option = static_cast<std::size_t>(index);
    txtName.text = option + 1 < nameOptions.size() ? nameOptions[option] : "";
}

void ExportFrame::enableWidths() {
    txtLW.enabled = txtRW.enabled = width == Sides;
    txtTW.enabled = width == Total;
}

void ExportFrame::optWLR_Click() {
    width = Sides;
    enableWidths();
    txtLW.text = txtRW.text = basic::text(val(txtTW.text) / 2);
}

void ExportFrame::optWTot_Click() {
    width = Total;
    enableWidths();
    txtTW.text = basic::text(val(txtLW.text) + val(txtRW.text));
}

void ExportFrame::optGut_Click(int index) {
    optGut = index == TopWidth ? TopWidth : Slope;
    txtTopW.enabled = optGut == TopWidth;
    cboGIS.enabled = cboGOS.enabled = optGut == Slope;
}

void ExportFrame::cmdSel_Click(desktop::Desktop& desktop) {
    if (auto path = desktop.fileDialog(desktop::FileDialog::Open, "Road.mdb")) lblProj = *path;
}

bool ExportFrame::Cal(desktop::Desktop& desktop) {
    try {
        return optGut == TopWidth ? calSlopes(desktop) : calTopWidth(desktop);
    } catch (const basic::RuntimeError& error) {
        desktop.messageBox(error.description());
        return false;
    }
}

bool ExportFrame::calSlopes(desktop::Desktop& desktop) {
    const double top = val(txtTopW.text);
    const double bottom = val(txtWDrn.text);
    if (top <= 0) {
        desktop.messageBox("Gutter Top Width is invalid or Zero");
        return false;
    }
    if (bottom > top) {
        desktop.messageBox("Top width of gutter is Less than Bottom width, Please check it");
        return false;
    }
    const double depth = val(txtDDrn.text);
    if (depth == 0) throw basic::RuntimeError(basic::DivisionByZero);
    cboGIS.text = basic::format((top - bottom) / 2 / depth, basic::pattern("#0.00"));
    cboGOS.text = cboGIS.text;
    return true;
}

bool ExportFrame::calTopWidth(desktop::Desktop& desktop) {
    const double inner = val(cboGIS.text);
    const double outer = val(cboGOS.text);
    if (inner < 0) {
        desktop.messageBox("Gutter Inner side is invalid or Zero");
        return false;
    }
    if (outer < 0) {
        desktop.messageBox("Gutter Outer side is invalid or Zero");
        return false;
    }
    const double top = (outer + inner) * val(txtDDrn.text) + val(txtWDrn.text);
    txtTopW.text = basic::format(top, basic::pattern("#0.00#"));
    return true;
}

} // namespace exchange
