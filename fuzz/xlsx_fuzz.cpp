#include "table_parts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const char* const names[] = {"xl/worksheets/sheet1.xml", "xl/styles.xml", "xl/sharedStrings.xml",
                                        "xl/workbook.xml", "xl/_rels/workbook.xml.rels"};
    tables::MemoryParts parts = partsOf(data, size, names);
    return checkReading([&parts](tables::Writer& out) { tables::readXlsx(parts, {}, out); });
}
