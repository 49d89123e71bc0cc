#include "book_sheets.h"

#include "basic/numbers.h"
#include "sheet/book.h"
#include "sheet/cells.h"
#include "survey/rise_and_fall.h"

#include <algorithm>
#include <cmath>

namespace shell {
namespace {

using drawing::Align;
using drawing::DisplayList;
using drawing::Layer;

// Millimetres.
constexpr double letter = 2.1; // height of a capital: 8 points
constexpr double pitch = 4.6;  // of the rows
constexpr double titleHeight = 8;
constexpr double fieldPitch = 5;
constexpr double tableHead = 6;
constexpr double footHeight = 10;
constexpr double padding = 0.8;
constexpr double closingPitch = 5;
constexpr double signatures = 18;
constexpr double leastRemark = 20;

std::string level(double value) {
    return basic::format(value, basic::pattern("#0.000##"));
}

} // namespace

BookSheets::BookSheets(const sheet::Grid& grid, BookPrint print,
                       std::function<double(const std::string&)> widthOf)
    : m_grid(grid),
      m_print(std::move(print)),
      m_widthOf(std::move(widthOf)),
      m_runs(std::make_unique<survey::Runs>(grid, m_print.closing)) {
    layOutColumns();
    const double rows = tableTop() - tableHead - footHeight - m_print.paper.margin;
    m_lines = std::max(5, static_cast<int>(rows / pitch));
    m_pages = std::make_unique<survey::BookPages>(grid, *m_runs, m_lines, [this](int row) {
        return static_cast<int>(wrapped(m_grid.Text(row, sheet::Remark)).size());
    });
    writeClosing();
    const survey::BookPage last = m_pages->page(m_pages->count() - 1);
    double lines = 0;
    for (const survey::PageLine& line : last.lines)
        lines +=
            static_cast<double>(wrapped(line.forward ? "" : m_grid.Text(line.row, sheet::Remark)).size());
    const double room = (m_lines - lines) * pitch;
    const double wanted = static_cast<double>(m_closing.size()) * closingPitch + signatures;
    if (wanted + pitch > room)
        m_closingPages = static_cast<int>((m_closing.size() + closingLines() - 1) / closingLines());
}

/// Lines of the closing on a page of its own, so that the signatures always find room.
std::size_t BookSheets::closingLines() const {
    return static_cast<std::size_t>(std::max(1.0, (m_lines * pitch - signatures) / closingPitch));
}

double BookSheets::tableTop() const {
    const double fields = std::ceil(static_cast<double>(m_print.heading.size()) / 2) * fieldPitch;
    return m_print.paper.height - m_print.paper.margin - titleHeight - fields;
}

void BookSheets::layOutColumns() {
    m_columns = {{"Row", 10, RowNumber},          {"Chainage", 18, sheet::Chainage},
                 {"Left", 12, sheet::Left},       {"Center", 13, sheet::Center},
                 {"Right", 12, sheet::Right},     {"B.S.", 14, sheet::BackSight},
                 {"I.S.", 14, sheet::InterSight}, {"F.S.", 14, sheet::ForeSight}};
    if (m_print.riseAndFall) {
        m_columns.push_back({"Rise", 13, Rise});
        m_columns.push_back({"Fall", 13, Fall});
    }
    m_columns.push_back({"Hgt.Inst", 17, sheet::HgtInst});
    m_columns.push_back({"R.Level.", 17, sheet::RLevel});
    if (m_print.adjusted) m_columns.push_back({"Adjusted", 17, Adjusted});
    double width = 0;
    for (const Column& column : m_columns)
        width += column.width;
    const double paper = m_print.paper.width - 2 * m_print.paper.margin;
    // On a narrow paper the columns give way, so that the remarks have some room.
    const double share = std::min(1.0, (paper - leastRemark) / width);
    double left = m_print.paper.margin;
    for (Column& column : m_columns) {
        column.width *= share;
        column.left = left;
        left += column.width;
    }
    m_columns.push_back({"Remark", paper - width * share, sheet::Remark, left});
}

/// The lines that a remark takes in its column, broken between words where it can be.
std::vector<std::string> BookSheets::wrapped(const std::string& remark) const {
    const double room = m_columns.back().width - 2 * padding;
    if (drawing::estimatedWidth(remark, letter) * 2 < room) return {remark};
    std::vector<std::string> lines(1);
    std::size_t blank = std::string::npos; // in the last line
    for (std::size_t at = 0; at < remark.size();) {
        std::size_t end = at + 1;
        while (end < remark.size() && (static_cast<unsigned char>(remark[end]) & 0xC0U) == 0x80)
            ++end;
        const std::string sign = remark.substr(at, end - at);
        std::string& line = lines.back();
        if (!line.empty() && m_widthOf(line + sign) * letter > room) {
            std::string rest;
            if (blank != std::string::npos && sign != " ") {
                rest = line.substr(blank + 1);
                line.resize(blank);
            }
            lines.push_back(std::move(rest));
            blank = std::string::npos;
        }
        if (sign == " ") blank = lines.back().size();
        lines.back() += sign;
        at = end;
    }
    return lines;
}

void BookSheets::writeClosing() {
    const survey::BookSums sums = m_pages->sums();
    const survey::PageFoot& book = sums.book;
    if (book.sights == 0) return;
    if (m_pages->count() > 1)
        m_closing.push_back("All pages: sum B.S. " + level(book.backSights + sums.repeated) + ", sum F.S. " +
                            level(book.foreSights + sums.repeated) + "; of each " + level(sums.repeated) +
                            " repeated at page ends");
    std::string check = "Book: sum B.S. " + level(book.backSights) + " - sum F.S. " + level(book.foreSights) +
                        " = " + level(book.backSights - book.foreSights);
    if (book.hasLevels)
        check += "; last level " + level(book.lastLevel) + " - first level " + level(book.firstLevel) +
                 " = " + level(book.lastLevel - book.firstLevel) + ": " +
                 (book.agrees() ? "agrees" : "DIFFERS");
    m_closing.push_back(check);
    if (sums.closingInterSight > 0)
        m_closing.push_back("The I.S. of row " + std::to_string(sums.closingInterSight) +
                            " closes the book and counts as a fore sight.");
    if (sums.unusedBackSight > 0)
        m_closing.push_back("The B.S. of row " + std::to_string(sums.unusedBackSight) +
                            " stands in [] and is not summed: nothing was sighted from it.");
    if (m_print.riseAndFall) m_closing.push_back(survey::describe(survey::checkRiseAndFall(m_grid, *m_runs)));
    for (const survey::RunSection& section : m_runs->sections()) {
        const auto point = [](const std::string& name, int row) {
            return name.empty() ? "row " + std::to_string(row) : name + " (row " + std::to_string(row) + ')';
        };
        m_closing.push_back(point(section.from, section.fromRow) + " to " + point(section.to, section.toRow) +
                            ": " + survey::describe(section));
    }
    if (m_runs->stoppedAt() > 0)
        m_closing.push_back("The run stops before row " + std::to_string(m_runs->stoppedAt()) +
                            ": its reading is no number.");
}

std::string BookSheets::cell(const survey::PageLine& line, int column) const {
    switch (column) {
    case RowNumber:
        return line.forward ? std::string() : std::to_string(line.row);
    case sheet::BackSight:
        return line.backSight;
    case sheet::ForeSight:
        return line.foreSight;
    case sheet::InterSight:
    case sheet::Remark:
        if (line.forward) return column == sheet::Remark ? "brought forward" : "";
        return m_grid.Text(line.row, column);
    case Rise:
    case Fall: {
        const auto rise = line.forward ? std::nullopt : survey::riseAt(*m_runs, line.row);
        return !rise || (*rise < 0) != (column == Fall) ? std::string() : level(std::abs(*rise));
    }
    case Adjusted: {
        const auto found = m_runs->levelAt(line.row);
        return found ? sheet::levelText(found->adjusted()) : std::string();
    }
    default:
        return m_grid.Text(line.row, column);
    }
}

void BookSheets::put(DisplayList& list, const Column& column, double y, const std::string& text) const {
    if (text.empty()) return;
    const bool left = column.gridColumn == sheet::Chainage || column.gridColumn == sheet::Remark;
    const double room = column.width - 2 * padding;
    // A text that is too wide for its column is written in smaller letters.
    const double height = std::min(letter, letter * room / std::max(m_widthOf(text) * letter, 1e-9));
    const double x = left ? column.left + padding : column.left + column.width - padding;
    list.text(Layer::Text, {x, y}, height, text, left ? Align::Left : Align::Right);
}

void BookSheets::drawHeading(DisplayList& list, int number) const {
    const drawing::Paper& paper = m_print.paper;
    double y = paper.height - paper.margin - 4;
    list.text(Layer::Text, {paper.margin, y}, 3.2, "Field book");
    list.text(Layer::Text, {paper.width - paper.margin, y}, letter,
              "Page " + std::to_string(number) + " of " + std::to_string(count()), Align::Right);
    y = paper.height - paper.margin - titleHeight;
    const double width = (paper.width - 2 * paper.margin) / 2;
    for (std::size_t k = 0; k < m_print.heading.size(); ++k) {
        const HeadingField& field = m_print.heading[k];
        const double left = paper.margin + (k % 2 == 0 ? 0 : width);
        const double label = 26;
        list.text(Layer::Text, {left, y - 3.5}, letter, field.label);
        const double room = width - label - 3;
        const double height = std::min(letter, room / std::max(m_widthOf(field.value), 1e-9));
        list.text(Layer::Text, {left + label, y - 3.5}, height, field.value);
        list.line(Layer::Grid, {left + label, y - 4.4}, {left + width - 3, y - 4.4});
        if (k % 2 == 1) y -= fieldPitch;
    }
}

void BookSheets::drawRow(DisplayList& list, const survey::PageLine& line, double& y) const {
    const double base = y - pitch + 1.3;
    for (const Column& column : m_columns)
        if (column.gridColumn != sheet::Remark) put(list, column, base, cell(line, column.gridColumn));
    const std::string remark = cell(line, sheet::Remark);
    const auto lines = line.forward ? std::vector{remark} : wrapped(remark);
    for (const std::string& part : lines) {
        put(list, m_columns.back(), y - pitch + 1.3, part);
        y -= pitch;
    }
    list.line(Layer::Grid, {m_columns.front().left, y}, {m_print.paper.width - m_print.paper.margin, y});
}

/// Draws the head of the table and the rows; the height at which they end.
double BookSheets::drawRows(DisplayList& list, const survey::BookPage& page) const {
    const drawing::Paper& paper = m_print.paper;
    const double right = paper.width - paper.margin;
    const double top = tableTop();
    double y = top - tableHead;
    list.line(Layer::Frame, {paper.margin, top}, {right, top});
    list.line(Layer::Frame, {paper.margin, y}, {right, y});
    for (const Column& column : m_columns)
        put(list, column, y + 2, column.head);
    for (const survey::PageLine& line : page.lines)
        drawRow(list, line, y);
    for (const Column& column : m_columns)
        list.line(Layer::Grid, {column.left, top}, {column.left, y});
    list.line(Layer::Grid, {right, top}, {right, y});
    return y;
}

void BookSheets::drawFoot(DisplayList& list, const survey::PageFoot& foot, double y) const {
    const drawing::Paper& paper = m_print.paper;
    list.line(Layer::Frame, {paper.margin, y}, {paper.width - paper.margin, y});
    y -= 4;
    for (const Column& column : m_columns) {
        if (column.gridColumn == sheet::Chainage) put(list, column, y, "Sum");
        if (column.gridColumn == sheet::BackSight) put(list, column, y, level(foot.backSights));
        if (column.gridColumn == sheet::ForeSight) put(list, column, y, level(foot.foreSights));
    }
    std::string check = "B.S. - F.S. = " + level(foot.backSights - foot.foreSights);
    if (foot.hasLevels)
        check += "; last - first = " + level(foot.lastLevel) + " - " + level(foot.firstLevel) + " = " +
                 level(foot.lastLevel - foot.firstLevel) + "; " + (foot.agrees() ? "agrees" : "DIFFERS");
    list.text(Layer::Text, {paper.width - paper.margin, y - 4.5}, letter, check, Align::Right);
}

void BookSheets::drawClosing(DisplayList& list, double y, std::size_t first, std::size_t end) const {
    const drawing::Paper& paper = m_print.paper;
    const double width = paper.width - 2 * paper.margin;
    y -= 2;
    for (std::size_t k = first; k < end; ++k, y -= closingPitch) {
        const double height = std::min(letter, width / std::max(m_widthOf(m_closing[k]), 1e-9));
        list.text(Layer::Text, {paper.margin, y - 3}, height, m_closing[k]);
    }
    if (end < m_closing.size()) return;
    y -= 11;
    const char* who[] = {"Surveyor", "Booker", "Checked", "Date"};
    for (int k = 0; k < 4; ++k) {
        const double left = paper.margin + width / 4 * k;
        list.line(Layer::Frame, {left, y}, {left + width / 4 - 5, y});
        list.text(Layer::Text, {left, y - 3.5}, letter, who[k]);
    }
}

DisplayList BookSheets::sheet(int index) const {
    DisplayList list;
    drawHeading(list, index + 1);
    if (index < m_pages->count()) {
        const survey::BookPage page = m_pages->page(index);
        double y = drawRows(list, page);
        const bool isLast = index + 1 == count();
        // On the last page the foot stands between the rows and the closing, else at the foot of the paper.
        if (page.foot.sights > 0) {
            y = isLast ? y - pitch / 2 : m_print.paper.margin + footHeight;
            drawFoot(list, page.foot, y);
            y -= footHeight;
        }
        if (isLast) drawClosing(list, y, 0, m_closing.size());
        return list;
    }
    const auto first = static_cast<std::size_t>(index - m_pages->count()) * closingLines();
    drawClosing(list, tableTop(), first, std::min(first + closingLines(), m_closing.size()));
    return list;
}

} // namespace shell
