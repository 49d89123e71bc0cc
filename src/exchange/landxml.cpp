#include "landxml.h"

#include "basic/files.h"
#include "basic/numbers.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace exchange {
namespace {

using survey::GroundPoint;

std::string number(double value) {
    return basic::plainText(value);
}

/// An attribute's value; characters that XML does not know are left out.
std::string xmlQuoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '"')
            result += "&quot;";
        else if (static_cast<unsigned char>(c) >= 32)
            result += c;
    }
    return result + '"';
}

std::string dateAndTime(std::chrono::system_clock::time_point written) {
    const auto day = std::chrono::floor<std::chrono::days>(written);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(std::chrono::floor<std::chrono::seconds>(written - day));
    char text[80];
    std::snprintf(text, sizeof text, "date=\"%04d-%02u-%02u\" time=\"%02d:%02d:%02d\"", int(date.year()),
                  unsigned(date.month()), unsigned(date.day()), int(time.hours().count()),
                  int(time.minutes().count()), int(time.seconds().count()));
    return text;
}

/// The first and the last chainage of what is written.
std::pair<double, double> reach(const Ground& ground) {
    double start = 1e300;
    double end = -1e300;
    const auto take = [&](CrossPoints points) {
        if (points.empty()) return;
        start = std::min(start, points.front().chainage);
        end = std::max(end, points.back().chainage);
    };
    take(ground.centre);
    std::ranges::for_each(ground.crossSections, take);
    return {start, end};
}

void appendList(std::string& xml, std::span<const GroundPoint> points, double GroundPoint::*along) {
    xml += "<PntList2D>";
    for (const GroundPoint& point : points) {
        if (&point != &points.front()) xml += ' ';
        xml += number(point.*along) + ' ' + number(point.level);
    }
    xml += "</PntList2D>";
}

} // namespace

std::string LandXmlExporter::write(const Ground& ground) const {
    const auto [start, end] = reach(ground);
    const double length = end - start;
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\""
                      " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
                      " xsi:schemaLocation=\"http://www.landxml.org/schema/LandXML-1.2"
                      " http://www.landxml.org/schema/LandXML-1.2/LandXML-1.2.xsd\" version=\"1.2\" " +
                      dateAndTime(m_options.written) + " language=\"English\" readOnly=\"false\">\n";
    xml += "<Units><Metric areaUnit=\"squareMeter\" linearUnit=\"meter\" volumeUnit=\"cubicMeter\""
           " temperatureUnit=\"celsius\" pressureUnit=\"milliBars\"/></Units>\n"
           "<Application name=\"ZavroGrl\"/>\n";
    xml += "<Alignments name=\"Roads\">\n<Alignment name=" + xmlQuoted(basic::toUtf8(m_options.road)) +
           " length=\"" + number(length) + "\" staStart=\"" + number(start) +
           "\" desc=\"Levelled ground; the plan is not known: a straight line of the right length\">\n"
           "<CoordGeom><Line><Start>0 0</Start><End>" +
           number(length) + " 0</End></Line></CoordGeom>\n";
    if (!ground.centre.empty()) {
        xml += "<Profile name=\"Centre line\"><ProfSurf name=\"Ground\">";
        appendList(xml, ground.centre, &GroundPoint::chainage);
        xml += "</ProfSurf></Profile>\n";
    }
    if (!ground.crossSections.empty()) xml += "<CrossSects>\n";
    for (const CrossPoints points : ground.crossSections) {
        xml += "<CrossSect sta=\"" + number(points.front().chainage) + "\"><CrossSectSurf name=\"Ground\">";
        appendList(xml, points, &GroundPoint::offset);
        xml += "</CrossSectSurf></CrossSect>\n";
    }
    if (!ground.crossSections.empty()) xml += "</CrossSects>\n";
    return xml + "</Alignment>\n</Alignments>\n</LandXML>\n";
}

} // namespace exchange
