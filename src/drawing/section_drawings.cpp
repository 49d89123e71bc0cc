#include "section_drawings.h"

namespace drawing {

ProfileDrawing drawLongSection(std::span<const GroundPlace> ground, const ProfileStyle& style) {
    ProfileDrawing drawing = drawProfile(ground, style);
    if (ground.empty()) return drawing;
    const double h = style.textHeight;
    const double top = drawing.list.bounds().top;
    drawing.list.text(Layer::Text, {0, top + 4 * h}, 1.4 * h,
                      "Long section " + chainageText(ground.front().along) + " to " +
                          chainageText(ground.back().along));
    drawing.list.text(Layer::Text, {0, top + 2 * h}, h,
                      scaleText(style.scale) + ", " +
                          exaggerationText(style.scale.horizontal / style.scale.vertical));
    return drawing;
}

ProfileDrawing drawCrossSection(double chainage, std::span<const GroundPlace> ground, ProfileStyle style,
                                const std::string& note) {
    style.figures = Figures::Offset;
    style.row = fittingRow(ground, style.figures);
    ProfileDrawing drawing = drawProfile(ground, style);
    if (ground.empty()) return drawing;
    const double h = style.textHeight;
    const double top = drawing.list.bounds().top + 2 * h;
    const double centre = -ground.front().along * style.scale.perMetre();
    if (ground.front().along <= 0 && ground.back().along >= 0) {
        drawing.list.line(Layer::Centre, {centre, 0}, {centre, top});
        drawing.list.text(Layer::Centre, {centre, top + 0.4 * h}, 0.8 * h, "CL", Align::Centre);
    }
    const double middle = (ground.back().along - ground.front().along) / 2 * style.scale.perMetre();
    drawing.list.text(Layer::Text, {middle, top + 2 * h}, 1.4 * h, chainageText(chainage) + note,
                      Align::Centre);
    return drawing;
}

} // namespace drawing
