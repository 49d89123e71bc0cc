#include "error.h"
#include "file.h"

#include <algorithm>

namespace jet {

namespace {

void requireInside(std::uint64_t offset, std::uint64_t length, std::uint64_t size) {
    if (offset > size || length > size - offset) throw Error(ErrorKind::Io, "The file ends too early.");
}

} // namespace

void MemoryFile::read(std::uint64_t offset, std::span<std::uint8_t> into) {
    requireInside(offset, into.size(), m_content.size());
    std::copy_n(m_content.begin() + static_cast<std::ptrdiff_t>(offset), into.size(), into.begin());
}

void MemoryFile::keep(std::uint64_t offset, std::uint64_t length) {
    requireInside(offset, length, m_content.size());
    const auto first = m_content.begin() + static_cast<std::ptrdiff_t>(offset);
    m_next.insert(m_next.end(), first, first + static_cast<std::ptrdiff_t>(length));
}

void MemoryFile::append(std::span<const std::uint8_t> bytes) {
    m_next.insert(m_next.end(), bytes.begin(), bytes.end());
}

} // namespace jet
