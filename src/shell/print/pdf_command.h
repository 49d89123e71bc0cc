#pragma once

#include "project/book.h"

#include <QStringList>

#include <functional>
#include <string>

namespace shell {

/// True when the arguments ask for a PDF file instead of the window.
[[nodiscard]] bool wantsPdf(int argc, char** argv);

/// Fills a book from a file; false when it cannot, which was said on standard error.
using LoadBook = std::function<bool(project::Book& book, const std::string& path)>;

/// `--pdf OUT.pdf [--paper a4|letter] [--across] [--adjusted] [--rise-and-fall] [--sections] [--by
/// setups|distance] [--allow RULE] [--length KM] BOOK`: writes the printed book without a window, a login or
/// a question. The exit status: 0 written, 1 it could not be, 2 wrong usage.
[[nodiscard]] int writePdfOf(const QStringList& arguments, const LoadBook& load);

} // namespace shell
