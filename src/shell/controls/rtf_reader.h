#pragma once

#include "rtf/document.h"

#include <QPalette>

#include <string_view>

class QTextDocument;

namespace shell {

/// Replaces the contents of `target` by a rich-text document. Colours of the document that could not be read
/// on the palette's paper give way to the palette's own.
void showRtf(const rtf::Document& source, QTextDocument& target, const QPalette& palette);

/// Reads a rich-text file, of which 32 MiB at most are shown. A file that cannot be read leaves `target`
/// empty.
void loadRtf(std::string_view path, QTextDocument& target, const QPalette& palette);

} // namespace shell
