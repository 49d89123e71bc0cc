#include "print_items.h"

#include "print_dialog.h"
#include "print_progress.h"

#include "../frmGrl.h"
#include "../levels/book_memory.h"
#include "../text.h"

#include "basic/files.h"
#include "exchange/dxf.h"
#include "exchange/landxml.h"

#include <QFileDialog>
#include <QPrintDialog>
#include <QPrinter>

namespace shell {
namespace {

class PrintItems final : public WindowPart {
  public:
    explicit PrintItems(frmGrl& window) : m_window(window) {
        const auto file = [&](const char* name, const char* caption, PrintDialog::Aim aim,
                              const char* shortcut) {
            MenuItem item{name, caption, [this, aim] { open(aim); }, {"Print", true, true}, shortcut};
            item.before = "sep11";
            window.addItem(window.menu("mnuFile"), item);
        };
        MenuItem separator{"sepPrint", "-"};
        separator.before = "sep11";
        window.addItem(window.menu("mnuFile"), separator);
        file("mnuPreview", "Print pre&view...", PrintDialog::Aim::Preview, "");
        file("mnuPrint", "&Print...", PrintDialog::Aim::Print, "Ctrl+P");
        file("mnuPdf", "Save as P&DF...", PrintDialog::Aim::Pdf, "");

        QMenu& tools = window.menu("mnuTools");
        window.addItem(tools, {"sepSections", "-"});
        window.addItem(tools, {"mnuDxf", "Sections to D&XF...", [this] { sendDxf(); }, {"DXF", true, true}});
        window.addItem(
            tools,
            {"mnuLandXml", "Sections to &LandXML...", [this] { sendLandXml(); }, {"LandXML", true, true}});
    }

  private:
    [[nodiscard]] const sheet::Grid& grid() const { return m_window.book().MSFG; }

    /// The path of the project without its ending; "NoName" while it has none.
    [[nodiscard]] std::string bookPath() const {
        const std::string path = basic::nativePath(m_window.book().projectPath());
        return path.substr(0, path.size() - std::min<std::size_t>(4, path.size()));
    }
    [[nodiscard]] std::string bookName() const { return basic::baseName(bookPath()); }

    void open(PrintDialog::Aim aim) {
        // The run is judged as in its pane.
        const project::Book& book = m_window.book();
        m_choice.closing =
            BookMemory(m_window.stateFolder()).closing(book.hasFile() ? book.projectPath() : std::string());
        PrintDialog dialog({grid(), bookName(), m_window.book().JobHeading}, m_choice, aim, &m_window);
        dialog.print = [&](const PrintJob& job) {
            if (print(job, dialog)) dialog.accept();
        };
        dialog.savePdf = [&](const PrintJob& job) {
            if (savePdf(job, dialog)) dialog.accept();
        };
        dialog.exec();
        m_choice = dialog.choice();
    }

    [[nodiscard]] std::string fileFor(const char* title, const char* ending, QWidget& parent) const {
        QFileDialog dialog(&parent, text(title), fromUtf8(bookPath() + ending),
                           QLatin1String("*") + QLatin1String(ending));
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setDefaultSuffix(QLatin1String(ending + 1));
        dialog.selectFile(fromUtf8(bookName() + ending));
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
        return toUtf8(dialog.selectedFiles().front());
    }

    bool savePdf(const PrintJob& job, QWidget& parent) {
        const std::string path = fileFor("Save as PDF", ".pdf", parent);
        if (path.empty()) return false;
        PrintProgress progress(job.count(), &parent);
        const PdfWritten written =
            writePdf(job, path, bookName(), [&progress](int done) { return progress.goOn(done); });
        m_window.desktop().status(describe(written, job, path));
        if (written.outcome == Printed::Failed) m_window.desktop().messageBox(describe(written, job, path));
        return written.outcome == Printed::Done;
    }

    bool print(const PrintJob& job, QWidget& parent) {
        QPrinter printer(QPrinter::HighResolution);
        printer.setPageLayout(job.choice().layout());
        printer.setFullPage(true);
        printer.setDocName(fromUtf8(bookName()));
        QPrintDialog dialog(&printer, &parent);
        dialog.setOption(QAbstractPrintDialog::PrintPageRange);
        dialog.setMinMax(1, job.count());
        if (dialog.exec() != QDialog::Accepted) return false;
        const bool isRange = printer.printRange() == QPrinter::PageRange;
        const int first = isRange ? std::max(1, printer.fromPage()) : 1;
        const int last = isRange ? std::min(job.count(), printer.toPage()) : job.count();
        PrintProgress progress(last - first + 1, &parent);
        const Printed printed =
            printOn(printer, job, first - 1, last - 1, [&progress](int done) { return progress.goOn(done); });
        const std::string words = describePrint(printed, last - first + 1);
        m_window.desktop().status(words);
        if (printed == Printed::Failed) m_window.desktop().messageBox(words);
        return printed == Printed::Done;
    }

    void send(const exchange::SectionExporter& exporter, const char* title, const char* ending) {
        const std::string path = fileFor(title, ending, m_window);
        if (path.empty()) return;
        survey::Sections sections(grid());
        m_window.desktop().status(
            exchange::describe(exchange::exportSections(sections, exporter, path), path));
    }
    void sendDxf() {
        exchange::DxfOptions options;
        options.longScale = m_choice.longScale;
        options.crossScale = m_choice.crossScale;
        options.title = bookName();
        send(exchange::DxfExporter(options), "Sections to DXF", ".dxf");
    }
    void sendLandXml() {
        send(exchange::LandXmlExporter({bookName(), m_window.desktop().now()}), "Sections to LandXML",
             ".xml");
    }

    frmGrl& m_window;
    PrintChoice m_choice; // as last chosen
};

} // namespace

std::unique_ptr<WindowPart> makePrintItems(frmGrl& window) {
    return std::make_unique<PrintItems>(window);
}

} // namespace shell
