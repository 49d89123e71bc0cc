#include "title_strip.h"

namespace drawing {

Box roomOn(const Paper& paper) {
    Box room;
    room.add({paper.margin, paper.margin + stripHeight});
    room.add({paper.width - paper.margin, paper.height - paper.margin});
    return room;
}

void drawStrip(DisplayList& list, const Paper& paper, const StripTexts& texts, const std::string& title,
               const std::string& scale, int sheet, int of) {
    const Box room = roomOn(paper);
    Box edge = room;
    edge.bottom = paper.margin;
    list.rectangle(Layer::Frame, edge);
    list.line(Layer::Frame, {room.left, room.bottom}, {room.right, room.bottom});

    const double upper = room.bottom - 5.5;
    const double lower = room.bottom - 11;
    const double left = room.left + 3;
    const double right = room.right - 3;
    list.text(Layer::Text, {left, upper}, 2.5, texts.work);
    list.text(Layer::Text, {left, lower}, 2.5, texts.road);
    const double middle = room.left + room.width() * 0.62;
    list.text(Layer::Text, {middle, upper}, 2.5, title, Align::Centre);
    list.text(Layer::Text, {middle, lower}, 2.5, scale, Align::Centre);
    list.text(Layer::Text, {right, lower}, 2.5,
              "Sheet " + std::to_string(sheet) + " of " + std::to_string(of), Align::Right);
}

} // namespace drawing
