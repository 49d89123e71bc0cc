#include "window.h"

#include "shell/print/pdf_command.h"
#include "shell/print/print_dialog.h"
#include "shell/print/print_job.h"
#include "shell/print/print_progress.h"

#include "basic/numbers.h"
#include "command_output.h"
#include "field_book.h"
#include "file_faults.h"
#include "survey/sections.h"

#include <QCheckBox>
#include <QPrinter>
#include <QProgressDialog>
#include <QPushButton>
#include <QSpinBox>

#include <charconv>
#include <cmath>
#include <map>
#include <optional>
#include <sstream>
#include <string_view>

namespace {

using shell::PrintChoice;
using shell::Printed;
using shell::PrintJob;
using testing::HasSubstr;

struct Paper : testing::Test {
    TempFolder folder;
    project::Book book;
    std::string pdf = folder / "book.pdf";

    std::string write(const PrintChoice& choice) {
        const PrintJob job({book.MSFG, "book", book.JobHeading}, choice);
        return describe(writePdf(job, pdf, "book", {}), job, pdf);
    }
    [[nodiscard]] std::string read(const char* how) const {
        return outputOf(std::string("pdftotext ") + how + " '" + pdf + "' -").value_or("");
    }
};

struct Place {
    double x, y; // millimetres
};

/// From each point of the ground's lines to the next, on all pages of a PDF as another program reads it.
std::vector<Place> groundSteps(const std::string& pdf, int pages) {
    std::vector<Place> steps;
    for (int page = 1; page <= pages; ++page) {
        const std::string number = std::to_string(page);
        const std::string svg =
            outputOf("pdftocairo -svg -f " + number + " -l " + number + " '" + pdf + "' -").value_or("");
        for (const std::string& path : splitAt(svg, '>')) {
            constexpr const char* ground = "stroke-width:16.5"; // 0.35 mm in dots
            const std::size_t form = path.find(" d=\"");
            const std::size_t matrix = path.find("matrix(");
            if (path.find(ground) == std::string::npos || form == std::string::npos) continue;
            const double unit = basic::val(path.substr(matrix + 7)) * 25.4 / 72;
            std::istringstream words(path.substr(form + 4));
            std::optional<Place> before;
            std::string word;
            for (Place at{}; words >> word >> at.x >> at.y; before = at)
                if (word == "L" && before)
                    steps.push_back({(at.x - before->x) * unit, (at.y - before->y) * unit});
        }
    }
    return steps;
}

/// The columns of a printed page by their heads, read as a person would: by what stands beneath them.
struct ReadPage {
    std::map<std::string, double> sums;    // of the rows' figures
    std::map<std::string, double> printed; // of the line "Sum"
    std::vector<int> rows;
    std::string foot;

    explicit ReadPage(const std::string& page) {
        std::map<std::string, std::size_t> ends;
        for (const std::string& line : splitAt(page, '\n')) {
            if (line.find("Hgt.Inst") != std::string::npos)
                for (const char* head : {"B.S.", "F.S."})
                    ends[head] = line.find(head) + 4;
            if (line.find("B.S. - F.S.") != std::string::npos) foot = line;
            if (ends.empty() || !foot.empty()) continue;
            const bool isSum = line.find(" Sum ") != std::string::npos;
            const int row = std::atoi(line.c_str());
            if (row > 0) rows.push_back(row);
            if (row == 0 && !isSum && line.find("brought forward") == std::string::npos) continue;
            for (const auto& [head, end] : ends) {
                if (line.size() + 3 < end) continue;
                // A figure ends beneath its head, give or take a blank.
                std::size_t last = std::min(line.size(), end + 3);
                while (last > end - 4 && line[last - 1] == ' ')
                    --last;
                const std::size_t first = line.find_last_of(' ', last - 1) + 1;
                std::string figure = line.substr(first, last - first);
                if (figure.starts_with('(')) figure = figure.substr(1);
                (isSum ? printed : sums)[head] += basic::val(figure);
            }
        }
    }
};

TEST_F(Paper, PagesAddUpAndHoldEveryRowOnce) {
    if (read("-v").empty() && !outputOf("pdftotext -v 2>&1"))
        GTEST_SKIP() << "poppler-utils is not installed";
    loadBook(book, "gsi-pv16");
    // Long enough for several pages: the run again and again, from where it stands.
    const int rows = book.MSFG.Rows();
    for (int turn = 0; turn < 3; ++turn) {
        const int at = book.MSFG.Rows();
        book.MSFG.setText(at - 1, sheet::BackSight, "1.5");
        book.MSFG.setRows(at + rows - 2);
        for (int row = 2; row < rows; ++row)
            for (int col = 0; col < sheet::columnCount; ++col)
                if (col != sheet::RLevel) book.MSFG.setText(at + row - 2, col, book.MSFG.Text(row, col));
    }
    book.MSFG.setText(
        2, sheet::Remark,
        "Ein langer Vermerk \u00fcber den Festpunkt am Sockel der alten Br\u00fccke, linke Seite, "
        "unter der Tafel");
    book.JobHeading.setText(sheet::Heading::find("work").value(), "Bypass, lot 2");
    PrintChoice choice;
    choice.adjusted = true;
    EXPECT_THAT(write(choice), HasSubstr("pages written"));
    const std::string text = read("-layout");
    std::vector<int> found;
    int pages = 0;
    for (const std::string& part : splitAt(text, '\f')) {
        const ReadPage page(part);
        found.insert(found.end(), page.rows.begin(), page.rows.end());
        if (page.foot.empty()) continue;
        ++pages;
        EXPECT_NEAR(page.sums.at("B.S."), page.printed.at("B.S."), 1e-6) << part;
        EXPECT_NEAR(page.sums.at("F.S."), page.printed.at("F.S."), 1e-6) << part;
        EXPECT_THAT(page.foot, HasSubstr("agrees"));
    }
    EXPECT_GT(pages, 3);
    ASSERT_EQ(found.size(), static_cast<std::size_t>(book.MSFG.Rows() - 1));
    for (std::size_t k = 0; k < found.size(); ++k)
        EXPECT_EQ(found[k], static_cast<int>(k) + 1);
    for (const char* words : {"Br\u00fccke", "Page 2 of", "Surveyor", "brought forward"})
        EXPECT_THAT(text, HasSubstr(words));
}

TEST_F(Paper, SectionsAreTrueToScale) {
    loadBook(book, "tramo1-xsec");
    PrintChoice choice;
    choice.book = false;
    choice.longSection = true;
    choice.across = true;
    EXPECT_THAT(write(choice), HasSubstr("2 pages written"));
    const std::string words = read("-l 1 -bbox");
    if (words.empty()) GTEST_SKIP() << "poppler-utils is not installed";
    const auto placeOf = [&words](const std::string& word) {
        constexpr std::string_view before = "xMin=\"";
        const std::size_t end = words.find("\">" + word + "</word>");
        const char* figure = words.data() + words.rfind(before, end) + before.size();
        double x = 0; // its point is one in every locale
        EXPECT_EQ(std::from_chars(figure, words.data() + words.size(), x).ec, std::errc()) << word;
        return x * 25.4 / 72;
    };
    EXPECT_NEAR(placeOf("00-200") - placeOf("00-010"), 190, 0.1);
    EXPECT_NEAR(placeOf("00-050") - placeOf("00-040"), 10, 0.1);
    EXPECT_THAT(read("-l 1"), HasSubstr("1:1000 by 1:100, V x10"));
    EXPECT_THAT(outputOf("pdfinfo '" + pdf + "'").value_or(""), HasSubstr("842 x 595"));

    survey::Sections sections(book.MSFG);
    const auto line = sections.longSection();
    const std::vector<Place> steps = groundSteps(pdf, 2);
    ASSERT_EQ(steps.size() + 1, line.size());
    for (std::size_t k = 0; k < steps.size(); ++k) {
        EXPECT_NEAR(steps[k].x, line[k + 1].chainage - line[k].chainage, 0.1) << "1:1000, " << k;
        EXPECT_NEAR(-steps[k].y, (line[k + 1].level - line[k].level) * 10, 0.1) << "1:100, " << k;
    }
    choice.longSection = false;
    choice.crossSections = true;
    EXPECT_THAT(write(choice), HasSubstr("10 pages written"));
    const std::vector<Place> across = groundSteps(pdf, 10);
    const auto points = sections.points();
    std::size_t at = 0;
    for (std::size_t k = 1; k < points.size(); ++k) {
        if (points[k].chainage != points[k - 1].chainage) continue;
        ASSERT_LT(at, across.size());
        EXPECT_NEAR(across[at].x, (points[k].offset - points[k - 1].offset) * 10, 0.1) << k;
        EXPECT_NEAR(-across[at].y, (points[k].level - points[k - 1].level) * 10, 0.1) << k;
        ++at;
    }
    EXPECT_EQ(at, across.size());
}

TEST_F(Paper, APrinterThatFailsIsTold) {
    loadBook(book, "tramo1-xsec");
    const PrintJob job({book.MSFG, "book", {}}, {});
    const auto printed = [&](const std::string& file, const std::function<bool(int)>& goOn) {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(shell::fromUtf8(file));
        return printOn(printer, job, 0, job.count() - 1, goOn);
    };
    EXPECT_EQ(printed(folder / "no/folder.pdf", {}), Printed::Failed);
    EXPECT_EQ(printed(pdf, {}), Printed::Done);
    EXPECT_EQ(printed(pdf, [](int done) { return done < 2; }), Printed::Cancelled);
    EXPECT_EQ(describePrint(Printed::Failed, 4), "The printer refused the pages");
    EXPECT_EQ(describePrint(Printed::Done, 4), "4 pages sent to the printer");

    /// Takes one page and no other, as one that runs out of paper.
    struct OnePage final : QPrinter {
        bool newPage() override { return false; }
    } jammed;
    jammed.setOutputFormat(QPrinter::PdfFormat);
    jammed.setOutputFileName(shell::fromUtf8(pdf));
    EXPECT_EQ(printOn(jammed, job, 0, 1, {}), Printed::Failed);
    struct GivesUp final : QPrinter {
        bool newPage() override { return abort() && QPrinter::newPage(); }
    } offline;
    offline.setOutputFormat(QPrinter::PdfFormat);
    offline.setOutputFileName(shell::fromUtf8(pdf));
    EXPECT_EQ(printOn(offline, job, 0, job.count() - 1, {}), Printed::Failed);
}

TEST_F(Paper, ALongPrintCanBeCancelled) {
    loadBook(book, "tramo1-xsec");
    folder.write("book.pdf", "old");
    const PrintJob job({book.MSFG, "book", {}}, {});
    int pages = 0;
    const auto run = [&](std::chrono::milliseconds until) {
        shell::PrintProgress progress(job.count(), nullptr, until);
        QTimer::singleShot(0, [] {
            for (QWidget* each : QApplication::topLevelWidgets())
                if (auto* dialog = qobject_cast<QProgressDialog*>(each); dialog && dialog->isVisible())
                    dialog->findChild<QPushButton*>()->click();
        });
        return writePdf(job, pdf, "book", [&](int done) { return progress.goOn(pages = done); }).outcome;
    };
    EXPECT_EQ(run(std::chrono::milliseconds(0)), Printed::Cancelled);
    EXPECT_LT(pages, job.count());
    EXPECT_EQ(folder.read("book.pdf"), "old");
    EXPECT_EQ(run(std::chrono::hours(1)), Printed::Done) << "nothing is shown before";
}

TEST_F(Paper, AFailureLeavesTheOldFileWhole) {
    loadBook(book, "tramo1-derived");
    folder.write("book.pdf", "old");
    const PrintJob job({book.MSFG, "book", {}}, {});
    EXPECT_EQ(writePdf(job, pdf, "book", [](int) { return false; }).outcome, Printed::Cancelled);
    EXPECT_EQ(writePdf(job, folder / "no/where.pdf", "book", {}).outcome, Printed::Failed);
    {
        const FileFaults fullDisk(
            [](files::Call call, const std::string&) { return call == files::Call::Write ? ENOSPC : 0; });
        EXPECT_EQ(writePdf(job, pdf, "book", {}).reason, "Disk full");
    }
    PrintChoice nothing;
    nothing.book = false;
    EXPECT_THAT(write(nothing), HasSubstr("nothing to print"));
    EXPECT_EQ(folder.read("book.pdf"), "old");
    // A section without levels, and a sign that no font has.
    keyRows(book.MSFG, {",,,,1,,,,100", "00-000,,0,,,1.5,,,,\U00012345"});
    nothing.longSection = true;
    EXPECT_THAT(write(nothing), HasSubstr("Cal first"));
    EXPECT_THAT(write({}), HasSubstr("1 characters have no sign"));
}

TEST_F(Paper, TheCommandTellsByItsStatus) {
    const auto load = [](project::Book& loaded, const std::string& path) {
        if (path.ends_with("none")) return false;
        loadBook(loaded, "tramo1-derived");
        return true;
    };
    const auto run = [&](QStringList arguments) {
        return shell::writePdfOf(
            QStringList{QStringLiteral("zavrogrl"), QStringLiteral("--pdf"), shell::fromUtf8(pdf)} +
                arguments,
            load);
    };
    const QString name = QStringLiteral("book.csv");
    EXPECT_EQ(run({QStringLiteral("--paper"), QStringLiteral("letter"), QStringLiteral("--sections"), name}),
              0);
    EXPECT_THAT(read("-l 1"), HasSubstr("Field book"));
    for (const QStringList& wrong : {QStringList{},
                                     {name, name},
                                     {QStringLiteral("--paper=a3"), name},
                                     {QStringLiteral("--allow=much"), name},
                                     {QStringLiteral("--length=-1"), name},
                                     {QStringLiteral("--unknown"), name}})
        EXPECT_EQ(run(wrong), 2) << wrong.join(u' ').toStdString();
    EXPECT_EQ(run({QStringLiteral("none")}), 1);
}

struct PrintWindow : MainWindow {};

TEST_F(PrintWindow, OneDialogForPreviewAndPdf) {
    open();
    window->act({.name = "Open"}, [this] { loadBook(window->book(), "tramo1-xsec"); });
    const std::string pdf = folder / "out.pdf";
    int pages = 0;
    const Answers watcher([&](QWidget& modal) {
        if (auto* files = dynamic_cast<QFileDialog*>(&modal)) {
            auto* name = files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            name->setText(shell::fromUtf8(pdf));
            return QTest::keyClick(name, Qt::Key_Return);
        }
        auto* dialog = dynamic_cast<shell::PrintDialog*>(&modal);
        if (dialog == nullptr || pages > 0) return;
        auto* page = dialog->findChild<QSpinBox*>(QStringLiteral("spnPage"));
        const int before = page->maximum();
        dialog->findChild<QCheckBox*>(QStringLiteral("chkLong"))->setChecked(true);
        pages = page->maximum();
        EXPECT_GT(pages, before);
        page->setValue(pages); // the last one is painted
        EXPECT_FALSE(dialog->grab().isNull());
        // Its file dialog is answered by this watcher, which therefore must be done by then.
        QTimer::singleShot(0, dialog->findChild<QPushButton*>(QStringLiteral("cmdPdf")), &QPushButton::click);
    });
    press(Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(status(), std::to_string(pages) + " pages written to " + pdf);
    EXPECT_FALSE(window->book().BookChanged);
    EXPECT_TRUE(folder.read("out.pdf").starts_with("%PDF-"));
}

TEST_F(PrintWindow, SectionsGoToOtherPrograms) {
    open();
    window->act({.name = "Open"}, [this] { loadBook(window->book(), "tramo1-xsec"); });
    for (const auto& [item, name] : {std::pair{"mnuDxf", "road.dxf"}, {"mnuLandXml", "road.xml"}}) {
        answering({folder / name}, [&, menu = item] { choose(menu); });
        EXPECT_EQ(status(), "Long section of 42 points and 42 cross-sections of 126 points written to " +
                                (folder / name));
    }
    EXPECT_THAT(folder.read("road.xml"), HasSubstr("<CrossSect sta=\"410\">"));
}

} // namespace
