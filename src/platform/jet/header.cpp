#include "header.h"

#include "rc4.h"
#include "text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

namespace jet {

namespace {

constexpr std::uint32_t headerMaskKey = 0x6B39DAC7; ///< the bytes C7 DA 39 6B
constexpr std::size_t versionAt = 0x14;
constexpr std::size_t maskedAt = 0x18;
constexpr std::size_t maskedBytesJet3 = 126;
constexpr std::size_t maskedBytesJet4 = 128;
constexpr std::size_t freePagesAt = 0x18;
constexpr std::size_t secondMapAt = 0x1C;
constexpr std::size_t systemTablesAt = 0x20;
constexpr std::size_t codePageAt = 0x3C;
constexpr std::size_t encodingKeyAt = 0x3E;
constexpr std::size_t passwordAt = 0x42;
constexpr std::size_t passwordBytesJet3 = 20;
constexpr std::size_t passwordBytesJet4 = 40;
constexpr std::size_t buildAt = 0x6A;
constexpr std::size_t sortOrderAt = 0x6E;
constexpr std::size_t dateAt = 0x72;
constexpr std::size_t releaseAt = 0x98;
constexpr std::size_t commitCountersFromEnd = 512;
constexpr std::string_view jetMark("Standard Jet DB\0", 16);
constexpr std::string_view laterMark("Standard ACE DB\0", 16);

double doubleAt(const View& bytes, std::size_t at) {
    return std::bit_cast<double>(std::uint64_t{bytes.u32(at + 4)} << 32 | bytes.u32(at));
}

/// The four bytes over the password of Jet 4: the creation date as whole days.
std::uint32_t passwordMask(double days) {
    if (!(std::abs(days) < 2e9)) return 0;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(std::trunc(days)));
}

std::string readPassword(const View& page, Format format) {
    if (format == Format::Jet3) {
        const ByteView field = page.bytes(passwordAt, passwordBytesJet3);
        return utf8FromAnsi(
            field.first(static_cast<std::size_t>(std::ranges::find(field, 0) - field.begin())));
    }
    const std::uint32_t mask = passwordMask(doubleAt(page, dateAt));
    std::u16string text;
    for (std::size_t i = 0; i < passwordBytesJet4; i += 2) {
        const std::uint32_t part = mask >> (8 * (i % 4));
        const auto unit = static_cast<char16_t>(page.u16(passwordAt + i) ^ (part & 0xFFFF));
        if (unit == 0) break;
        text.push_back(unit);
    }
    return utf8FromUtf16(text);
}

bool startsWith(ByteView page, std::string_view mark) {
    return std::equal(mark.begin(), mark.end(), page.begin() + 4,
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

} // namespace

Header readHeader(ByteView page) {
    if (page.size() < headerBytes || page[0] != 0 || page[1] != 1 ||
        (!startsWith(page, jetMark) && !startsWith(page, laterMark)))
        throw Error(ErrorKind::NotADatabase, "The file is not a Jet database.");
    std::vector<std::uint8_t> plain(page.begin(), page.begin() + headerBytes);
    const std::uint32_t version = View(0, plain).u32(versionAt);
    if (version > 1 || startsWith(page, laterMark))
        throw Error(ErrorKind::UnsupportedVersion,
                    "The database was made by a later version (.accdb) that cannot be read.");
    Header header;
    header.format = version == 0 ? Format::Jet3 : Format::Jet4;
    const std::size_t masked = version == 0 ? maskedBytesJet3 : maskedBytesJet4;
    rc4(ByteSpan(plain).subspan(maskedAt, masked), headerMaskKey);
    const View view(0, plain);
    header.encodingKey = view.u32(encodingKeyAt);
    header.password = readPassword(view, header.format);
    return header;
}

void writeHeader(Edit page, const std::string& password) {
    const std::u16string text = utf16FromUtf8(password);
    if (text.size() * 2 > passwordBytesJet4)
        throw Error(ErrorKind::InvalidDesign, "A database password has at most 20 characters.");
    page.fill(0, page.size(), 0);
    page.set32(0, 0x100);
    for (std::size_t i = 0; i < jetMark.size(); ++i)
        page.set8(4 + i, static_cast<std::uint8_t>(jetMark[i]));
    page.set32(versionAt, 1);
    page.set32(freePagesAt, RowPointer{freePagesPage, 0}.pack());
    page.set32(secondMapAt, RowPointer{freePagesPage, 1}.pack());
    for (std::uint32_t i = 0; i < 4; ++i)
        page.set32(systemTablesAt + std::size_t{4} * i, catalogPage + i);
    page.set16(codePageAt, 1252);
    page.set32(buildAt, 9756);
    page.set32(sortOrderAt, 0x409);
    page.set32(dateAt, newFileDate & 0xFFFFFFFF);
    page.set32(dateAt + 4, newFileDate >> 32);
    const std::uint32_t mask = passwordMask(std::bit_cast<double>(newFileDate));
    for (std::size_t i = 0; i < passwordBytesJet4 / 2; ++i) {
        const std::uint32_t unit = i < text.size() ? text[i] : 0;
        page.set16(passwordAt + 2 * i, unit ^ (mask >> (16 * (i % 2)) & 0xFFFF));
    }
    rc4(page.room(maskedAt, maskedBytesJet4), headerMaskKey);
    page.set32(releaseAt, 0x654);
    page.setBytes(releaseAt + 4, std::array<std::uint8_t, 3>{'4', '.', '0'});
    const std::size_t counters = page.size() - commitCountersFromEnd;
    for (std::size_t i = 0; i < commitCountersFromEnd; i += 2)
        page.set16(counters + i, i == 0 ? 0x101 : 0x100);
}

} // namespace jet
