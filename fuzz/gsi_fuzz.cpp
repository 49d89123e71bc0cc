#include "level_file_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return checkLevelFile("*410001+00000000?......1 \n", data, size);
}
