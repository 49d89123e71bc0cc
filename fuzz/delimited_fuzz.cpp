#include "table_parts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    return checkReading([&bytes](tables::Writer& out) { tables::readDelimited(bytes, out); });
}
