#pragma once

#include "drawing/display_list.h"

#include <span>
#include <string>
#include <string_view>

namespace exchange {

/// Writes a DXF R12 file in ASCII: pairs of a group code and a value, one a line, CR LF. Coordinates with
/// four decimals. The sections HEADER and TABLES stand in front of the entities.
class DxfWriter {
  public:
    void line(const char* layer, drawing::Place from, drawing::Place to);
    void polyline(const char* layer, std::span<const drawing::Place> places);
    void text(const char* layer, const drawing::Text& text);

    /// The whole file.
    [[nodiscard]] std::string finish() const;

  private:
    std::string m_entities;
    drawing::Box m_extent;
};

/// A text as R12 takes it: Windows-1252, other letters as \U+XXXX, "^" as "^ ", no control characters, and a
/// blank between two "%", which would begin a special sign.
[[nodiscard]] std::string dxfText(std::string_view utf8);

} // namespace exchange
