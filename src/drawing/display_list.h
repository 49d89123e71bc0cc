#pragma once

#include <string>
#include <vector>

// What is drawn, without a word on what draws it: the window paints it, the printer prints it, an exporter
// writes it. Millimetres of paper, y upwards; angles in degrees, counterclockwise.

namespace drawing {

struct Place {
    double x = 0;
    double y = 0;
    friend bool operator==(const Place&, const Place&) = default;
};

enum class Layer {
    Ground,    ///< the ground itself
    Grid,      ///< uprights
    Text,      ///< figures and titles
    Frame,     ///< datum line, rows of figures, edges of sheets
    Centre,    ///< the centre line
    Neighbour, ///< sections shown behind another one, on the screen only
};
inline constexpr int layerCount = 6;
[[nodiscard]] const char* layerName(Layer layer); ///< as drawing programs name it: "GROUND"

struct Line {
    Layer layer;
    Place from;
    Place to;
};

struct Polyline {
    Layer layer;
    std::vector<Place> places;
};

enum class Align { Left, Centre, Right };

struct Text {
    Layer layer;
    Place at;      ///< on the base line, where `align` says
    double height; ///< of a capital letter
    double angle;
    Align align;
    std::string text;
};

/// A rectangle; empty as it is made.
struct Box {
    double left = 1e300;
    double bottom = 1e300;
    double right = -1e300;
    double top = -1e300;

    [[nodiscard]] bool isEmpty() const { return right < left; }
    [[nodiscard]] double width() const { return isEmpty() ? 0 : right - left; }
    [[nodiscard]] double height() const { return isEmpty() ? 0 : top - bottom; }
    void add(Place place);
};

struct DisplayList {
    std::vector<Line> lines;
    std::vector<Polyline> polylines;
    std::vector<Text> texts;

    void line(Layer layer, Place from, Place to) { lines.push_back({layer, from, to}); }
    void rectangle(Layer layer, const Box& box);
    void text(Layer layer, Place at, double height, std::string text, Align align = Align::Left,
              double angle = 0) {
        texts.push_back({layer, at, height, angle, align, std::move(text)});
    }
    /// Takes in another list, moved by `by`.
    void add(DisplayList other, Place by);
    /// What the list covers; of a text its estimated width.
    [[nodiscard]] Box bounds() const;
};

/// How wide a text of this height will be, about: fonts differ, and no font is known here.
[[nodiscard]] double estimatedWidth(const std::string& text, double height);

} // namespace drawing
