#pragma once

#include "status.h"

#include <sys/stat.h>

namespace files {

[[nodiscard]] Status statusFrom(const struct stat& found);

} // namespace files
