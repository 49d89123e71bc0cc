#pragma once

#include "section_export.h"

#include "drawing/figures.h"

namespace exchange {

struct DxfOptions {
    bool longSection = true;
    bool crossSections = true;
    drawing::Scale longScale{1000, 100}; ///< of the long section
    double crossScale = 100;             ///< of the cross-sections: the height of their texts
    std::string title;                   ///< the road; left out when empty
};

/// The sections as a drawing, DXF R12 (AC1009) in ASCII. One drawing unit is one metre along the road or
/// across it; heights are drawn `horizontal / vertical` times as tall. A section counts from the left end of
/// its datum line, whose place and datum stand beneath the figures in the drawing. Letters beyond
/// Windows-1252 are written as \U+XXXX. Format: Autodesk's DXF reference of release 12.
class DxfExporter final : public SectionExporter {
  public:
    explicit DxfExporter(DxfOptions options) : m_options(std::move(options)) {}
    [[nodiscard]] bool wantsLongSection() const override { return m_options.longSection; }
    [[nodiscard]] bool wantsCrossSections() const override { return m_options.crossSections; }
    [[nodiscard]] std::string write(const Ground& ground) const override;

  private:
    DxfOptions m_options;
};

} // namespace exchange
