#pragma once

#include <string_view>

namespace exchange {

/// Opens every road database.
inline constexpr std::string_view roadConnect = ";pwd=TarnVel";

/// Adds to LSect of the open mdlTools::RoadDb every field of the table LSectFieldName that
/// mdlTools::RoadLSect lacks, names compared without regard to case. The engine's errors pass: an older LSect
/// without one of the flags cannot be upgraded.
void upgradeLSect();

} // namespace exchange
