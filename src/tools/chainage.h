#pragma once

#include <string>
#include <string_view>

// The chainage routines of mdlTools: KK-MMM, kilometres and metres along the road.

namespace mdlTools {

/// Metres as chainage text with up to two decimals: 1250.5 gives "01-250.5". Raises Overflow (6) from 33 km
/// on, since kilometres times 1000 is worked in 16 bits.
[[nodiscard]] std::string ChainageText(float metres);

/// A stored chainage as it is shown: blanks at both ends removed, leading non-digits dropped ("CH 0-120"
/// gives "0-120"), "CP" and the empty text kept. The number of characters dropped is bounded by the length
/// that is left, so a long run of non-digits keeps some ("abcd1" gives "d1").
[[nodiscard]] std::string cleanChainage(std::string_view text);

} // namespace mdlTools
