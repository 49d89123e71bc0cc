#pragma once

#include "formats.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>

// What the fuzz targets of tables share: the parts of a packed file out of one input, and the check that what
// a reader writes is a whole stream or a refusal.

/// The input is cut at the byte 0xFF into the parts `names`, in order.
template <std::size_t count>
tables::MemoryParts partsOf(const std::uint8_t* data, std::size_t size, const char* const (&names)[count]) {
    std::map<std::string, std::string> parts;
    std::string bytes(data, data + size);
    for (const char* name : names) {
        const std::size_t end = bytes.find('\xFF');
        parts[name] = bytes.substr(0, end);
        if (end == std::string::npos) break;
        bytes.erase(0, end + 1);
    }
    return tables::MemoryParts(std::move(parts));
}

/// `use` gets what was read.
template <typename Read, typename Use>
int checkReading(Read&& read, Use&& use) {
    tables::Collector collector;
    tables::Writer out([&collector](std::string_view piece) {
        try {
            collector.take(piece);
        } catch (const tables::Unreadable&) {
            std::abort(); // what a reader writes can be read
        }
    });
    try {
        read(out);
    } catch (const tables::Unreadable&) {
        return 0;
    }
    if (!collector.isWhole()) std::abort();
    use(std::move(collector).table());
    return 0;
}

template <typename Read>
int checkReading(Read&& read) {
    return checkReading(read, [](const tables::Table&) {});
}
