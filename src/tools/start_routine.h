#pragma once

#include <functional>

namespace mdlTools {

/// The start routine: fills the tables of road fields, then shows the first window.
void Main(const std::function<void()>& showFirstWindow);

} // namespace mdlTools
