#pragma once

#include "bytes.h"
#include "layout.h"

#include <string>
#include <string_view>

namespace jet {

/// What page 0 says.
struct Header {
    Format format = Format::Jet4;
    std::uint32_t encodingKey = 0; ///< 0 = the pages are not encoded
    std::string password;          ///< UTF-8
};

/// Reads page 0, given at least its first bytes as they stand in the file. NotADatabase, UnsupportedVersion.
[[nodiscard]] Header readHeader(ByteView page);
/// How many bytes readHeader needs.
constexpr std::size_t headerBytes = 0x98 + 8;

/// Writes page 0 of a new Jet 4 file. The creation date and the account ids of new_database.cpp belong
/// together.
void writeHeader(Edit page, const std::string& password);

/// The creation date of the files that the engine makes; account ids are masked with a key that belongs to
/// it.
constexpr std::uint64_t newFileDate = 0x40E4AB3E3BD3853E;

} // namespace jet
