#pragma once

#include "exit_status.h"

#include "exchange/dxf.h"

#include <iosfwd>
#include <string>

// What the sections of a book become without the window.

namespace cli {

/// Prints chainage, side, offset, level and row of every ground point in the order of the road: a line each,
/// or with `json` one array of objects with chainage and offset in metres.
ExitStatus printSections(const std::string& book, bool json, std::istream& in, std::ostream& out,
                         std::ostream& err);

/// Writes the sections as a drawing with the book's name as title.
ExitStatus writeDxf(const std::string& book, const std::string& path, exchange::DxfOptions options,
                    std::istream& in, std::ostream& err);

/// Writes the sections as LandXML; the road is named after the book when `road` is empty.
ExitStatus writeLandXml(const std::string& book, const std::string& path, const std::string& road,
                        std::istream& in, std::ostream& err);

} // namespace cli
