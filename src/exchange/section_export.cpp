#include "section_export.h"

#include "basic/files.h"
#include "basic/runtime_error.h"

#include <algorithm>

namespace exchange {
namespace {

void takeCrossSections(CrossPoints points, Ground& ground, SectionExport& sent) {
    for (std::size_t first = 0; first < points.size();) {
        std::size_t end = first + 1;
        while (end < points.size() && points[end].chainage == points[first].chainage)
            ++end;
        if (end - first > 1) {
            ground.crossSections.push_back(points.subspan(first, end - first));
            sent.crossPoints += end - first;
        } else {
            ++sent.leftOut;
        }
        first = end;
    }
    sent.crossSections = ground.crossSections.size();
}

std::string counted(std::size_t number, const char* one, const char* many) {
    return std::to_string(number) + ' ' + (number == 1 ? one : many);
}

} // namespace

SectionExport exportSections(survey::Sections& sections, const SectionExporter& exporter,
                             std::string_view path) {
    SectionExport sent;
    sent.withoutLevel = sections.rowsWithoutLevel();
    Ground ground;
    std::vector<survey::GroundPoint> centre;
    if (exporter.wantsLongSection()) centre = sections.longSection();
    if (centre.size() > 1) ground.centre = centre;
    sent.centrePoints = ground.centre.size();
    if (exporter.wantsCrossSections()) takeCrossSections(sections.points(), ground, sent);
    if (sent.centrePoints == 0 && sent.crossSections == 0) {
        sent.outcome = sent.withoutLevel > 0 ? SectionsSent::CalFirst : SectionsSent::NothingToDo;
        return sent;
    }
    try {
        basic::writeFile(path, exporter.write(ground));
    } catch (const basic::RuntimeError& error) {
        sent.outcome = SectionsSent::NotWritten;
        sent.reason = error.told(path);
    }
    return sent;
}

std::string describe(const SectionExport& sent, std::string_view path) {
    switch (sent.outcome) {
    case SectionsSent::CalFirst:
        return "Cal first: " +
               counted(static_cast<std::size_t>(sent.withoutLevel), "reading has", "readings have") +
               " no level";
    case SectionsSent::NothingToDo:
        return "No sections: no two rows with chainage, offset and level make a line";
    case SectionsSent::NotWritten:
        return std::string(path) + ": " + sent.reason;
    case SectionsSent::Written:
        break;
    }
    std::string words;
    if (sent.centrePoints > 0) words = "Long section of " + std::to_string(sent.centrePoints) + " points";
    if (sent.crossSections > 0)
        words += (words.empty() ? "" : " and ") +
                 counted(sent.crossSections, "cross-section", "cross-sections") + " of " +
                 std::to_string(sent.crossPoints) + " points";
    words += " written to " + std::string(path);
    if (sent.leftOut > 0)
        words += "; " + counted(sent.leftOut, "section", "sections") + " of a single point left out";
    if (sent.withoutLevel > 0)
        words += "; " + counted(static_cast<std::size_t>(sent.withoutLevel), "reading", "readings") +
                 " without a level, Cal first";
    return words;
}

} // namespace exchange
