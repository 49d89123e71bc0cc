#include "tables/table_stream.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// The stream of the reader program: any bytes give a table or are refused, however they are cut.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    bool whole[2] = {};
    for (const bool cut : {false, true}) {
        tables::Collector collector;
        try {
            if (cut)
                for (const char c : bytes)
                    collector.take({&c, 1});
            else
                collector.take(bytes);
            whole[cut] = collector.isWhole();
        } catch (const tables::Unreadable&) {
        }
    }
    if (whole[0] != whole[1]) std::abort();
    return 0;
}
