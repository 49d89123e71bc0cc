#pragma once

#include "book_sheets.h"

#include "../controls/list_painter.h"

#include "drawing/sheets.h"
#include "sheet/grid.h"
#include "sheet/heading.h"

#include <QPageLayout>
#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QPagedPaintDevice;
class QPainter;
class QPrinter;

namespace shell {

/// What is to be printed of a book.
struct PrintChoice {
    bool book = true;
    bool longSection = false;
    bool crossSections = false;
    bool letter = false; ///< the paper: else A4
    bool across = false;
    bool adjusted = false;
    bool riseAndFall = false;
    drawing::Scale longScale{1000, 100};
    double crossScale = 100;
    survey::Closing closing;

    [[nodiscard]] drawing::Paper paper() const;
    [[nodiscard]] QPageLayout layout() const; ///< the same, without margins
};

/// What is printed. The book gives road, chainages and start mark itself where its heading does not.
struct PrintedBook {
    const sheet::Grid& grid;
    std::string name; ///< of the file; printed where no road is named
    sheet::Heading heading;
};

enum class Printed { Done, Cancelled, Failed };

/// The pages of a print, each laid out when it is painted, so that the memory does not grow with their
/// number.
class PrintJob {
  public:
    PrintJob(const PrintedBook& book, const PrintChoice& choice);

    [[nodiscard]] int count() const;
    /// Sheets that hold no book page: what the sections need and lack, or how they were shrunk. May be empty.
    [[nodiscard]] const std::string& note() const { return m_note; }
    [[nodiscard]] const PrintChoice& choice() const { return m_choice; }

    /// Paints one page, from 0; `perMillimetre` units of the painter make a millimetre of paper.
    void paint(QPainter& painter, int page, double perMillimetre) const;
    /// Paints pages `first` to `last` on a device whose pages have no margins. `goOn` hears how many are done
    /// and stops it with false.
    Printed paintAll(QPagedPaintDevice& device, int first, int last,
                     const std::function<bool(int done)>& goOn) const;
    /// Characters painted so far that no font of the desktop has a sign for.
    [[nodiscard]] int withoutSign() const { return m_withoutSign; }

  private:
    void addSections(const PrintedBook& book, const drawing::StripTexts& strip);
    void countSigns(const drawing::DisplayList& list) const;

    PrintChoice m_choice;
    ListLook m_look;
    std::vector<std::unique_ptr<drawing::Sheets>> m_parts;
    std::string m_note;
    mutable int m_withoutSign = 0;
};

/// What came of writing a PDF file.
struct PdfWritten {
    Printed outcome = Printed::Done;
    std::string reason; ///< of a failure
};

/// Writes the job beside `path` first and then renames it, so that an old file stays whole when it fails.
[[nodiscard]] PdfWritten writePdf(const PrintJob& job, const std::string& path, const std::string& title,
                                  const std::function<bool(int done)>& goOn);

/// Paints pages `first` to `last` on a printer, which drops them when `goOn` stops it. A printer that ends in
/// an error or gives up has failed, whatever it took before.
[[nodiscard]] Printed printOn(QPrinter& printer, const PrintJob& job, int first, int last,
                              const std::function<bool(int done)>& goOn);
/// What the user is told of that.
[[nodiscard]] std::string describePrint(Printed printed, int pages);

/// "12 pages written to book.pdf; 3 characters have no sign in any font that is installed".
[[nodiscard]] std::string describe(const PdfWritten& written, const PrintJob& job, const std::string& path);

} // namespace shell
