#include "transfer_command.h"

#include "book_file.h"
#include "stream_desktop.h"

#include "exchange/formation_levels.h"
#include "exchange/marked_rows.h"
#include "exchange/transfer.h"
#include "project/program_folder.h"
#include "tools/road_tables.h"

#include "basic/files.h"

#include <algorithm>
#include <ostream>

namespace cli {
namespace {

using exchange::ExportFrame;
using exchange::TransferEnd;

/// Keeps what goes to the status bar until the command has said what matters.
class TransferDesktop final : public StreamDesktop {
  public:
    using StreamDesktop::StreamDesktop;

    void status(std::string_view message) override {
        if (!message.empty()) m_statuses.emplace_back(message);
    }
    void sayStatuses(project::Book& book) {
        for (const std::string& message : m_statuses)
            StreamDesktop::status(message);
        StreamDesktop::status(book.notices.takeLine().text);
    }

  private:
    std::vector<std::string> m_statuses;
};

/// The frame as the options want it; false when the gutter does not work out, which was said.
bool fillFrame(ExportFrame& frame, TransferDesktop& desktop, const TransferOptions& options) {
    const auto given = [&options](exchange::TextBox ExportFrame::*box) {
        return std::ranges::any_of(options.boxes,
                                   [box](const auto& text) { return frameOptions()[text.first].box == box; });
    };
    if (given(&ExportFrame::txtLW) || given(&ExportFrame::txtRW)) frame.optWLR_Click();
    frame.optGut_Click(options.gutter == "top" ? ExportFrame::TopWidth : ExportFrame::Slope);
    for (const auto& [number, text] : options.boxes)
        (frame.*frameOptions()[number].box).text = text;
    return frame.Cal(desktop);
}

/// The parent of the project folders; made when it is missing, its last level only.
bool makeParent(const std::string& folder, std::ostream& err) {
    try {
        if (!basic::folderExists(folder)) basic::makeFolder(folder);
        return true;
    } catch (const basic::RuntimeError& error) {
        return fail(err, folder, error) == Done;
    }
}

void sayMarkedRows(const sheet::Grid& grid, std::ostream& err) {
    for (const exchange::MarkedRow& marked : exchange::markedRows(grid))
        err << "row " << marked.row << " (" << grid.Text(marked.row, sheet::Chainage) << "): " << marked.fault
            << '\n';
}

} // namespace

const std::vector<FrameOption>& frameOptions() {
    static const std::vector<FrameOption> options{
        {"--name", "Name of work", &ExportFrame::txtName},
        {"--subdiv", "Sub-division", &ExportFrame::txtSubDiv},
        {"--div", "Division", &ExportFrame::txtDiv},
        {"--survey", "Surveyor", &ExportFrame::txtSurvey},
        {"--lw", "Left formation width, m", &ExportFrame::txtLW},
        {"--rw", "Right formation width, m", &ExportFrame::txtRW},
        {"--tw", "Total formation width, m", &ExportFrame::txtTW},
        {"--crg", "Carriage way width, m", &ExportFrame::txtCrgWid},
        {"--fill", "Side slope in filling, X of X : 1", &ExportFrame::cboFill},
        {"--cut", "Side slope in cutting, X of X : 1", &ExportFrame::cboCut},
        {"--gis", "Inner side slope of the gutter, X of X : 1", &ExportFrame::cboGIS},
        {"--gos", "Outer side slope of the gutter, X of X : 1", &ExportFrame::cboGOS},
        {"--topw", "Top width of the gutter, m", &ExportFrame::txtTopW},
        {"--ddrn", "Depth of the gutter, m", &ExportFrame::txtDDrn},
        {"--wdrn", "Bottom width of the gutter, m", &ExportFrame::txtWDrn},
    };
    return options;
}

ExitStatus transfer(const TransferOptions& options, std::ostream& out, std::ostream& err) {
    mdlTools::InitLSectFieldTable();
    TransferDesktop desktop(err);
    desktop.status(project::prepareProgramFolder(desktop.programFolder(), project::shippedFolder()));
    project::Book book;
    book.DefaultFolder = options.folder;
    ExportFrame frame;
    if (!openProject(book, desktop, options.book) || !fillFrame(frame, desktop, options)) return Failed;
    if (!exchange::showExportFrame(book, desktop, frame)) {
        desktop.sayStatuses(book);
        return Failed;
    }

    frame.chkFRL = !options.frl.empty();
    frame.lblProj = frame.chkFRL ? options.frl : options.frlUpdate;
    if (!options.frlUpdate.empty()) {
        const bool updated = exchange::updateFormationLevels(book.MSFG, desktop, frame);
        desktop.sayStatuses(book);
        return updated ? Done : Failed;
    }
    if (!frame.chkFRL && !makeParent(options.folder, err)) return Failed;
    const TransferEnd end = exchange::transfer(book, desktop, frame);
    if (end == TransferEnd::Refused)
        sayMarkedRows(book.MSFG, err);
    else
        desktop.sayStatuses(book);
    if (end == TransferEnd::Done || end == TransferEnd::DoneInPart) out << frame.madeFolder << "/Road.mdb\n";
    return end == TransferEnd::Done || end == TransferEnd::Sent ? Done : Failed;
}

} // namespace cli
