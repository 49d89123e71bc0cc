#pragma once

#include "display_list.h"
#include "profile.h"

#include <string>
#include <vector>

// Sections on sheets of paper at fixed scales. A plan of the sheets is made at once and is small; each sheet
// is drawn when it is asked for.

namespace drawing {

/// Millimetres. The origin of a sheet is its lower left corner.
struct Paper {
    double width = 210;
    double height = 297;
    double margin = 10;

    [[nodiscard]] Paper across() const { return {height, width, margin}; }
};
inline constexpr Paper a4{};
inline constexpr Paper letter{215.9, 279.4, 10};

/// What the strip at the foot of every sheet says beside the drawing, its scale and its number.
struct StripTexts {
    std::string work;
    std::string road;
};

class Sheets {
  public:
    virtual ~Sheets() = default;
    [[nodiscard]] virtual int count() const = 0;
    [[nodiscard]] virtual DisplayList sheet(int index) const = 0; ///< index from 0
};

/// The long section, cut into sheets at its points; the last point of a sheet is the first of the next one.
/// Where the ground is too high for the sheet the datum steps. Where it rises by more than a sheet from one
/// point to the next, heights are drawn at half the scale, or half of that.
class LongSheets final : public Sheets {
  public:
    LongSheets(std::vector<GroundPlace> ground, Scale scale, Paper paper, StripTexts texts);
    [[nodiscard]] int count() const override { return static_cast<int>(m_parts.size()); }
    [[nodiscard]] DisplayList sheet(int index) const override;
    [[nodiscard]] Scale scale() const { return m_style.scale; } ///< as drawn

  private:
    struct Part {
        std::size_t first, last;
    };

    [[nodiscard]] bool tooTall(double rise) const;

    std::vector<GroundPlace> m_ground;
    ProfileStyle m_style;
    Paper m_paper;
    StripTexts m_texts;
    std::vector<Part> m_parts;
};

struct CrossSection {
    double chainage;
    std::vector<GroundPlace> ground; ///< from left to right
};

/// Cross-sections, several on a sheet, in columns from the bottom left upwards. One that is larger than the
/// sheet is drawn at the next smaller usual scale, which its title names.
class CrossSheets final : public Sheets {
  public:
    CrossSheets(std::vector<CrossSection> sections, Scale scale, Paper paper, StripTexts texts);
    [[nodiscard]] int count() const override;
    [[nodiscard]] DisplayList sheet(int index) const override;
    [[nodiscard]] int shrunk() const { return m_shrunk; } ///< sections at a smaller scale than asked for

  private:
    struct Block {
        int sheet;
        Place at;     ///< where the left end of the datum line lies
        double times; ///< 1, or by how much the scale is smaller
    };

    [[nodiscard]] DisplayList draw(const CrossSection& section, double times) const;
    void layOut();

    std::vector<CrossSection> m_sections;
    Scale m_scale;
    Paper m_paper;
    StripTexts m_texts;
    std::vector<Block> m_blocks; // one a section
    int m_shrunk = 0;
};

} // namespace drawing
