#pragma once

#include "finding.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

// What the shape of the ground says about single readings: a whole metre or decimetre misread, digits
// swapped, jumps. Robust against the ground's own roughness, which is measured in the sections around.

namespace survey {

struct ShapePoint {
    int row;
    double offset; ///< metres, left negative
    double level;  ///< metres above anything that is the same for the group
};

struct ShapeSection {
    double chainage;        ///< metres
    int group;              ///< only sections of one group are compared
    std::size_t begin, end; ///< its points, from left to right
};

/// Sections in the order of the book with their points.
class GroundCheck {
  public:
    /// `readingText` gives the text of a row's reading, for digits that were swapped.
    GroundCheck(std::vector<ShapeSection> sections, std::vector<ShapePoint> points,
                std::function<std::string_view(int row)> readingText);

    /// What is found in the sections `from` to before `to`. They depend on `reach` sections on either side.
    [[nodiscard]] std::vector<Finding> find(std::size_t from, std::size_t to);
    static constexpr std::size_t reach = 13;

  private:
    struct Window {
        std::size_t from, to; // sections
    };
    [[nodiscard]] std::span<const ShapePoint> pointsOf(std::size_t section) const;
    [[nodiscard]] Window around(std::size_t section) const;
    [[nodiscard]] double endMedian(std::size_t section, bool left, const Window& window);
    [[nodiscard]] double along(std::size_t section, const ShapePoint& point) const;
    void residuals(std::size_t section);
    [[nodiscard]] double roughness(std::size_t point, const Window& window);
    [[nodiscard]] double unrest(std::size_t section) const;
    std::optional<std::size_t> mostLikely(std::size_t section);
    bool misread(std::size_t section, std::vector<Finding>& found);
    void jumpAcross(std::size_t section, std::vector<Finding>& found) const;
    void jumpAlong(std::size_t section, std::vector<Finding>& found);

    std::vector<ShapeSection> m_sections;
    std::vector<ShapePoint> m_points;
    std::function<std::string_view(int row)> m_readingText;
    std::vector<double> m_residuals; // by point; NaN: none
    std::vector<bool> m_misread;     // by section
    std::vector<double> m_sorted;    // scratch
};

} // namespace survey
