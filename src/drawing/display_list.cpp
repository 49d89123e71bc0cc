#include "display_list.h"

#include "basic/strings.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace drawing {

const char* layerName(Layer layer) {
    static constexpr const char* names[layerCount] = {"GROUND", "GRID",   "TEXT",
                                                      "FRAME",  "CENTRE", "NEIGHBOUR"};
    return names[static_cast<int>(layer)];
}

void Box::add(Place place) {
    left = std::min(left, place.x);
    right = std::max(right, place.x);
    bottom = std::min(bottom, place.y);
    top = std::max(top, place.y);
}

void DisplayList::rectangle(Layer layer, const Box& box) {
    polylines.push_back({layer,
                         {{box.left, box.bottom},
                          {box.right, box.bottom},
                          {box.right, box.top},
                          {box.left, box.top},
                          {box.left, box.bottom}}});
}

void DisplayList::add(DisplayList other, Place by) {
    const auto move = [by](Place& place) { place = {place.x + by.x, place.y + by.y}; };
    for (Line& each : other.lines) {
        move(each.from);
        move(each.to);
        lines.push_back(each);
    }
    for (Polyline& each : other.polylines) {
        std::ranges::for_each(each.places, move);
        polylines.push_back(std::move(each));
    }
    for (Text& each : other.texts) {
        move(each.at);
        texts.push_back(std::move(each));
    }
}

Box DisplayList::bounds() const {
    Box box;
    for (const Line& each : lines) {
        box.add(each.from);
        box.add(each.to);
    }
    for (const Polyline& each : polylines)
        for (const Place place : each.places)
            box.add(place);
    for (const Text& each : texts) {
        const double width = estimatedWidth(each.text, each.height);
        const double before = each.align == Align::Left ? 0 : each.align == Align::Right ? width : width / 2;
        const double angle = each.angle * std::numbers::pi / 180;
        for (const Place corner : {Place{-before, 0}, Place{width - before, each.height}})
            box.add({each.at.x + corner.x * std::cos(angle) - corner.y * std::sin(angle),
                     each.at.y + corner.x * std::sin(angle) + corner.y * std::cos(angle)});
    }
    return box;
}

double estimatedWidth(const std::string& text, double height) {
    return static_cast<double>(basic::length(text)) * height * 0.88;
}

} // namespace drawing
