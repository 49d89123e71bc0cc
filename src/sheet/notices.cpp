#include "notices.h"

#include "basic/strings.h"

#include <algorithm>
#include <utility>

namespace sheet {
namespace {

/// A column within a sentence; abbreviations keep their letters.
std::string nameOf(const Grid& grid, int col) {
    const std::string& header = grid.Text(0, col);
    return header.find('.') == std::string::npos ? basic::lower(header) : header;
}

template <typename All>
void moveRows(All& notices, int from, int by) {
    std::erase_if(notices, [=](const Notice& each) { return each.row >= from && each.row < from - by; });
    for (Notice& each : notices)
        if (each.row >= from) each.row += by;
}

} // namespace

void Notices::add(Notice notice) {
    ++m_count;
    if (m_untold.size() < mostKept) m_untold.push_back(std::move(notice));
}

void Notices::addOnce(Notice notice) {
    const auto same = [&](const Notice& each) { return each.text == notice.text; };
    if (std::ranges::none_of(m_told, same) && std::ranges::none_of(m_untold, same)) add(std::move(notice));
}

void Notices::addChange(const Grid& grid, int row, int col, const std::string& before,
                        Notice::Remedy remedy) {
    const std::string& after = grid.Text(row, col);
    add({row, col, nameOf(grid, col) + ' ' + before + (after.empty() ? " was emptied" : " became " + after),
         remedy, after});
}

Notices::Line Notices::takeLine() {
    if (m_untold.empty()) return {};
    const Notice& first = m_untold.front();
    Line line{first.row > 0 ? "Row " + std::to_string(first.row) + ": " + first.text : first.text,
              first.remedy};
    if (m_count > 1) line.text += ", and " + std::to_string(m_count - 1) + " more";
    line.text += '.';
    std::ranges::move(m_untold, std::back_inserter(m_told));
    while (m_told.size() > mostKept)
        m_told.pop_front();
    dropUntold();
    return line;
}

void Notices::dropUntold() {
    m_untold.clear();
    m_count = 0;
}

std::vector<Notice> Notices::list(const Grid& grid) const {
    std::vector<Notice> all;
    for (const Notice& each : m_told)
        if (each.row < grid.Rows() && (each.col < 0 || grid.Text(each.row, each.col) == each.after))
            all.push_back(each);
    return all;
}

void Notices::rowsInserted(int row, int count, Marks) {
    moveRows(m_told, row, count);
    moveRows(m_untold, row, count);
}

void Notices::rowsRemoved(int row, const RemovedRows& before, Marks) {
    moveRows(m_told, row, -before.count());
    moveRows(m_untold, row, -before.count());
}

void Notices::bookBegins() {
    m_told.clear();
    dropUntold();
}

} // namespace sheet
