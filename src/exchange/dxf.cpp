#include "dxf.h"

#include "dxf_writer.h"

#include "basic/files.h"
#include "drawing/section_drawings.h"

#include <algorithm>
#include <cmath>

namespace exchange {
namespace {

using drawing::GroundPlace;
using drawing::Layer;
using drawing::Place;
using drawing::ProfileDrawing;
using drawing::ProfileStyle;

constexpr double between = 10; // millimetres of paper between two drawings

/// "X 0.000 Y -52.000 = 00-000, Datum 10.000": where the left end of the datum line lies.
std::string originText(Place at, const std::string& along, double datum) {
    return "X " + drawing::levelText(at.x) + " Y " + drawing::levelText(at.y) + " = " + along + ", " +
           drawing::datumText(datum);
}

/// Millimetres of paper to drawing units.
struct Insertion {
    Place at; ///< of the left end of the datum line, drawing units
    double metre;

    [[nodiscard]] Place place(Place paper) const { return {at.x + paper.x * metre, at.y + paper.y * metre}; }
};

void put(DxfWriter& file, const drawing::DisplayList& list, const Insertion& insertion) {
    for (const drawing::Line& each : list.lines)
        file.line(drawing::layerName(each.layer), insertion.place(each.from), insertion.place(each.to));
    for (const drawing::Polyline& each : list.polylines) {
        std::vector<Place> places;
        places.reserve(each.places.size());
        for (const Place place : each.places)
            places.push_back(insertion.place(place));
        file.polyline(drawing::layerName(each.layer), places);
    }
    for (drawing::Text each : list.texts) {
        each.at = insertion.place(each.at);
        each.height *= insertion.metre;
        file.text(drawing::layerName(each.layer), each);
    }
}

void addOrigin(ProfileDrawing& drawing, double h, double row, Place at, const std::string& along) {
    drawing.list.text(Layer::Text, {0, -drawing::rowsHeight(h, row) - 1.5 * h}, 0.7 * h,
                      originText(at, along, drawing.stretches.front().frame.datum));
}

/// The long section with its left end at the origin; how far below it the next drawing begins, metres.
double putLong(DxfWriter& file, const Ground& ground, const DxfOptions& options) {
    std::vector<GroundPlace> places;
    for (const survey::GroundPoint& point : ground.centre)
        places.push_back({point.chainage, point.level});
    ProfileStyle style;
    style.scale = options.longScale;
    ProfileDrawing drawing = drawing::drawLongSection(places, style);
    addOrigin(drawing, style.textHeight, style.row, {}, drawing::chainageText(places.front().along));
    if (!options.title.empty())
        drawing.list.text(Layer::Text, {0, drawing.list.bounds().top + style.textHeight},
                          1.4 * style.textHeight, basic::toUtf8(options.title));
    const double metre = 1 / style.scale.perMetre();
    put(file, drawing.list, {{}, metre});
    return (drawing.list.bounds().bottom - between) * metre;
}

/// The cross-sections in columns from the bottom left upwards, all in cells of one size, below `top`.
void putCross(DxfWriter& file, const Ground& ground, const DxfOptions& options, double top) {
    ProfileStyle style;
    style.scale = {options.crossScale, options.crossScale};
    style.textHeight = 2;
    const auto draw = [&](CrossPoints points) {
        std::vector<GroundPlace> places;
        for (const survey::GroundPoint& point : points)
            places.push_back({point.offset, point.level});
        return drawing::drawCrossSection(points.front().chainage, places, style);
    };
    drawing::Box cell;
    for (const CrossPoints points : ground.crossSections) {
        const drawing::Box box = draw(points).list.bounds();
        cell.add({box.left, box.bottom});
        cell.add({box.right, box.top});
    }
    const double metre = 1 / style.scale.perMetre();
    const double width = (cell.width() + between) * metre;
    const double height = (cell.height() + between) * metre;
    const auto count = static_cast<double>(ground.crossSections.size());
    const double rows = std::ceil(std::sqrt(count * width / height));
    for (std::size_t k = 0; k < ground.crossSections.size(); ++k) {
        const double column = std::floor(static_cast<double>(k) / rows);
        const double row = static_cast<double>(k) - column * rows;
        const Place at{column * width, top - cell.top * metre - (rows - 1 - row) * height};
        const CrossPoints points = ground.crossSections[k];
        ProfileDrawing drawing = draw(points);
        addOrigin(drawing, style.textHeight, style.row, at, drawing::offsetText(points.front().offset));
        put(file, drawing.list, {at, metre});
    }
}

} // namespace

std::string DxfExporter::write(const Ground& ground) const {
    DxfWriter file;
    double top = 0;
    if (!ground.centre.empty()) top = putLong(file, ground, m_options);
    if (!ground.crossSections.empty()) putCross(file, ground, m_options, top);
    return file.finish();
}

} // namespace exchange
