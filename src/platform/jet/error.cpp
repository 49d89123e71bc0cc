#include "error.h"

namespace jet {

Error Error::corrupt(std::uint32_t page, std::uint32_t offset, const std::string& what) {
    Error error(ErrorKind::Corrupt, "The database is damaged: " + what + " (page " + std::to_string(page) +
                                        ", offset " + std::to_string(offset) + ").");
    error.m_page = page;
    error.m_offset = offset;
    return error;
}

} // namespace jet
