#include "chainage.h"

#include "basic/numbers.h"
#include "basic/strings.h"

#include <cmath>
#include <limits>

#include "basic/runtime_error.h"

namespace mdlTools {

std::string ChainageText(float metres) {
    const std::int16_t kilometres = basic::cInt(std::floor(double{metres} / 1000));
    const int whole = kilometres * 1000;
    if (whole != static_cast<std::int16_t>(whole)) throw basic::RuntimeError(basic::Overflow);
    const float rest = metres - static_cast<float>(whole);
    const auto m = static_cast<float>(std::nearbyint(double{rest} * 100) / 100);

    const std::string K = (kilometres < 10 ? "0" : "") + std::to_string(kilometres) + "-";
    const std::string M = basic::text(m);
    // The ranges overlap on purpose: from 9 to 10 and from 99 to 100 the later test wins.
    std::string result;
    if (m < 10) result = K + "00" + M;
    if (m > 9 && m < 100) result = K + "0" + M;
    if (m > 99) result = K + M;
    return result;
}

std::string cleanChainage(std::string_view text) {
    text = basic::trim(text);
    if (text == "CP" || text.empty()) return std::string(text);
    if (text.front() >= '0' && text.front() <= '9') return std::string(text); // as most are
    std::size_t left = basic::length(text);
    std::size_t counter = 1;
    do {
        const std::string_view first = basic::left(text, 1);
        if (!first.empty() && (first.front() < '0' || first.front() > '9')) {
            text.remove_prefix(first.size());
            --left;
        }
        ++counter;
    } while (counter <= left);
    return std::string(text);
}

} // namespace mdlTools
