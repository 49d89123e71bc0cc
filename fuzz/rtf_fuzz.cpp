#include "rtf/document.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

// Any bytes give a document; its text is bounded by the source.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    const rtf::Document document = rtf::read(bytes);
    if (rtf::plainText(document).size() > 64 * (size + 1)) std::abort();
    for (const rtf::Block& block : document.blocks)
        if (const auto* table = std::get_if<rtf::Table>(&block))
            for (const rtf::Row& row : table->rows)
                if (row.cells.empty() || row.cells.size() > 63 || row.edges.size() > 63) std::abort();
    return 0;
}
