#include "table_parts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const char* const names[] = {"content.xml", "META-INF/manifest.xml"};
    tables::MemoryParts parts = partsOf(data, size, names);
    return checkReading([&parts](tables::Writer& out) { tables::readOds(parts, {}, out); });
}
