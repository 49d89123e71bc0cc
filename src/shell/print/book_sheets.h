#pragma once

#include "drawing/sheets.h"
#include "sheet/grid.h"
#include "survey/book_pages.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace shell {

/// What the heading of every page says; an empty value is a line to write on.
struct HeadingField {
    std::string label;
    std::string value;
};

struct BookPrint {
    drawing::Paper paper;
    bool adjusted = false;    ///< a column with the adjusted levels
    bool riseAndFall = false; ///< two columns
    survey::Closing closing;  ///< how the run is judged and adjusted
    std::vector<HeadingField> heading;
};

/// The printed field book: a heading on every page, the columns of the grid, the sums of each page at its
/// foot, and behind the last row the sums of the book, what each section closes with and lines for
/// signatures.
class BookSheets final : public drawing::Sheets {
  public:
    /// `widthOf` measures a text in letters of a height of 1 mm. The grid must outlive this and not change.
    BookSheets(const sheet::Grid& grid, BookPrint print, std::function<double(const std::string&)> widthOf);

    [[nodiscard]] int count() const override { return m_pages->count() + m_closingPages; }
    [[nodiscard]] drawing::DisplayList sheet(int index) const override;

  private:
    struct Column {
        const char* head;
        double width;
        int gridColumn; ///< or one of those below
        double left = 0;
    };
    enum : int { RowNumber = -1, Rise = -2, Fall = -3, Adjusted = -4 };

    [[nodiscard]] double tableTop() const;
    [[nodiscard]] std::size_t closingLines() const;
    void layOutColumns();
    void writeClosing();
    [[nodiscard]] std::vector<std::string> wrapped(const std::string& remark) const;
    void drawHeading(drawing::DisplayList& list, int number) const;
    double drawRows(drawing::DisplayList& list, const survey::BookPage& page) const;
    void drawRow(drawing::DisplayList& list, const survey::PageLine& line, double& y) const;
    void drawFoot(drawing::DisplayList& list, const survey::PageFoot& foot, double y) const;
    void drawClosing(drawing::DisplayList& list, double y, std::size_t first, std::size_t end) const;
    [[nodiscard]] std::string cell(const survey::PageLine& line, int column) const;
    void put(drawing::DisplayList& list, const Column& column, double y, const std::string& text) const;

    const sheet::Grid& m_grid;
    BookPrint m_print;
    std::function<double(const std::string&)> m_widthOf;
    std::unique_ptr<survey::Runs> m_runs;
    std::vector<Column> m_columns;
    int m_lines = 0; // of rows on a page
    std::unique_ptr<survey::BookPages> m_pages;
    std::vector<std::string> m_closing; // line by line
    int m_closingPages = 0;             // behind the last page of rows, when it has no room
};

} // namespace shell
