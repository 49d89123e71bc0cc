#pragma once

#include "survey/sections.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

// The sections of a book for other programs.

namespace exchange {

enum class SectionsSent {
    Written,
    CalFirst,    ///< readings stand there, but no levels
    NothingToDo, ///< no two points with chainage, offset and level to draw a line through
    NotWritten   ///< the file could not be written; the old one is as it was
};

/// What an export came to.
struct SectionExport {
    SectionsSent outcome = SectionsSent::Written;
    std::size_t centrePoints = 0;  ///< of the long section; 0: none was written
    std::size_t crossSections = 0; ///< written
    std::size_t crossPoints = 0;   ///< in them
    std::size_t leftOut = 0;       ///< cross-sections of a single point, which are no line
    int withoutLevel = 0;          ///< rows with a reading whose level is missing
    std::string reason;            ///< why nothing was written

    [[nodiscard]] bool done() const { return outcome == SectionsSent::Written; }
};

/// One cross-section: points of one chainage, from left to right.
using CrossPoints = std::span<const survey::GroundPoint>;

/// What an exporter writes: a long section, cross-sections, or both.
struct Ground {
    std::span<const survey::GroundPoint> centre; ///< at least two points, or none
    std::vector<CrossPoints> crossSections;      ///< of at least two points each
};

/// A file format.
class SectionExporter {
  public:
    virtual ~SectionExporter() = default;
    [[nodiscard]] virtual bool wantsLongSection() const { return true; }
    [[nodiscard]] virtual bool wantsCrossSections() const { return true; }
    /// The whole content of the file. Something is to be written.
    [[nodiscard]] virtual std::string write(const Ground& ground) const = 0;
};

/// Writes the sections with `exporter` into the file `path`, beside it first and then renamed. Never changes
/// the book; raises nothing.
[[nodiscard]] SectionExport exportSections(survey::Sections& sections, const SectionExporter& exporter,
                                           std::string_view path);

/// What came of it in words: "Cal first: ...", "Long section of 42 points and 42 cross-sections of
/// 126 points written to road.dxf".
[[nodiscard]] std::string describe(const SectionExport& sent, std::string_view path);

} // namespace exchange
