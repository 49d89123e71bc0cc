#pragma once

#include "parts.h"

#include <string>
#include <string_view>

namespace tables {

/// The attributes of an element, valid while its `open` runs.
class Attributes {
  public:
    explicit Attributes(const char** pairs) : m_pairs(pairs) {}
    /// By the name behind its prefix; "" when it is not there.
    [[nodiscard]] std::string_view local(std::string_view name) const;
    /// By the whole name; "" when it is not there.
    [[nodiscard]] std::string_view whole(std::string_view name) const;
    /// A whole number; `otherwise` when it is missing, no number or beyond `most`.
    [[nodiscard]] static int number(std::string_view text, int otherwise, int most = 0x7FFFFFFF);

  private:
    const char** m_pairs;
};

/// What stands in an XML document, in its order. Names come without their prefix.
class XmlHandler {
  public:
    virtual ~XmlHandler() = default;
    virtual void open(std::string_view name, const Attributes& attributes) = 0;
    virtual void close(std::string_view) {}
    virtual void text(std::string_view) {}
    [[nodiscard]] virtual bool enough() const { return false; } ///< true ends the reading
};

/// Reads the part `name`; false when there is none. Raises Unreadable when it is not well-formed or declares
/// entities, and what the handler raises.
bool parseXml(Parts& parts, const std::string& name, XmlHandler& handler);

} // namespace tables
