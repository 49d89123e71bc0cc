#include "chainage_search.h"

#include "sections.h"

#include "basic/strings.h"
#include "sheet/book.h"

#include <cmath>
#include <string>

namespace survey {

std::optional<int> rowOfChainage(const sheet::Grid& grid, std::string_view answer) {
    std::string text(basic::trim(answer));
    if (const std::size_t point = text.find('.');
        point != std::string::npos && text.find_first_of("-+") == std::string::npos)
        text[point] = '-';
    const std::optional<double> wanted = chainageMetres(text);
    if (!wanted) return std::nullopt;
    constexpr double tenthOfAMillimetre = 0.0001;
    std::optional<int> next;
    double nextAt = 0;
    for (int row = 1; row < grid.Rows(); ++row) {
        const std::optional<double> here = chainageMetres(grid.Text(row, sheet::Chainage));
        if (!here) continue;
        if (std::abs(*here - *wanted) < tenthOfAMillimetre) return row;
        if (*here < *wanted || (next && *here >= nextAt)) continue;
        next = row;
        nextAt = *here;
    }
    return next;
}

} // namespace survey
