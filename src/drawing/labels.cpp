#include "labels.h"

#include <algorithm>
#include <cmath>

namespace drawing {
namespace {

constexpr double seenOnPaper = 0.5; // millimetres by which a turn must stand out

/// The first and the last point and the highest and lowest ones between that stand out by `least`.
std::vector<std::size_t> turns(std::span<const double> y, double least) {
    std::vector<std::size_t> found{0};
    std::size_t high = 0;
    std::size_t low = 0;
    int direction = 0; // 1 while the ground rises, 0 as long as nobody can tell
    for (std::size_t k = 1; k < y.size(); ++k) {
        if (y[k] > y[high]) high = k;
        if (y[k] < y[low]) low = k;
        const bool falls = direction >= 0 && y[high] - y[k] >= least;
        const bool rises = direction <= 0 && y[k] - y[low] >= least;
        if (!falls && !rises) continue;
        if (direction != 0) found.push_back(falls ? high : low);
        direction = falls ? -1 : 1;
        high = low = k;
    }
    if (y.size() > 1 && found.back() != y.size() - 1) found.push_back(y.size() - 1);
    return found;
}

/// Moves the labels aside so that none touch: a pass to the right, and one back from the end of the row.
void moveAside(std::vector<Label>& labels, double room, double end) {
    for (std::size_t k = 1; k < labels.size(); ++k)
        labels[k].x = std::max(labels[k].x, labels[k - 1].x + room);
    double limit = std::max(end, labels.front().x + room * static_cast<double>(labels.size() - 1));
    for (std::size_t k = labels.size(); k-- > 0;) {
        labels[k].x = std::min(labels[k].x, limit);
        limit = labels[k].x - room;
    }
}

} // namespace

std::vector<Label> chooseLabels(std::span<const double> x, std::span<const double> y, double room) {
    if (x.empty()) return {};
    double least = seenOnPaper;
    std::vector<std::size_t> kept = turns(y, least);
    const double fit = (x.back() - x.front()) / room + 1;
    while (kept.size() > 2 && static_cast<double>(kept.size()) > fit)
        kept = turns(y, least *= 2);

    std::vector<Label> labels;
    for (const std::size_t point : kept)
        labels.push_back({point, x[point]});
    moveAside(labels, room, x.back());

    std::vector<Label> all;
    std::size_t next = 0;
    for (std::size_t point = 0; point < x.size(); ++point) {
        if (next < labels.size() && labels[next].point == point) {
            all.push_back(labels[next++]);
            continue;
        }
        const bool clearBefore = x[point] - all.back().x >= room;
        const bool clearBehind = next >= labels.size() || labels[next].x - x[point] >= room;
        if (clearBefore && clearBehind) all.push_back({point, x[point]});
    }
    return all;
}

} // namespace drawing
