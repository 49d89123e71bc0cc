#include "level_file_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return checkLevelFile("For M5|Adr     1|TO  Start-Line  BF    1|\r\n", data, size);
}
