#pragma once

#include "book.h"
#include "report.h"

namespace project {

/// Keeps the version on disk of a book that has a file as ".bak", with the rights of the book and in place of
/// whatever stands there. A version of another program is kept under a name of its own besides, which the
/// next save leaves alone. False when such a version could not be kept: then it must not be overwritten.
[[nodiscard]] bool backUp(const Book& book, Report& report);

} // namespace project
