#pragma once

#include "section_export.h"

#include <chrono>

namespace exchange {

struct LandXmlOptions {
    std::string road = "Road";                     ///< name of the alignment
    std::chrono::system_clock::time_point written; ///< date and time in the file, UTC
};

/// The sections as LandXML 1.2: one alignment with the ground along its centre line as profile and the ground
/// across it as cross-section surfaces, offsets negative on the left, levels absolute, metres. A field book
/// has no bearings: the alignment is a straight line of the right length to the north, and says so. Format:
/// the schema LandXML-1.2.xsd of 29 July 2008.
class LandXmlExporter final : public SectionExporter {
  public:
    explicit LandXmlExporter(LandXmlOptions options) : m_options(std::move(options)) {}
    [[nodiscard]] std::string write(const Ground& ground) const override;

  private:
    LandXmlOptions m_options;
};

} // namespace exchange
