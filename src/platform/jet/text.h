#pragma once

#include "bytes.h"
#include "value.h"

#include <string>
#include <string_view>

// Texts are UTF-8 at the face of the engine. Jet 4 stores UTF-16, plain or compressed; Jet 3 code page 1252.
// Single halves of surrogate pairs keep their three-byte form, so that every stored text comes back as it
// was.

namespace jet {

/// All bytes are below 80; with `noZero` none of them is 0 either.
[[nodiscard]] bool isAscii(std::string_view text, bool noZero = false);
[[nodiscard]] std::u16string utf16FromUtf8(std::string_view text); ///< wrong bytes become U+FFFD
[[nodiscard]] std::string utf8FromUtf16(std::u16string_view text);
[[nodiscard]] std::string utf8FromAnsi(ByteView text);
[[nodiscard]] std::string ansiFromUtf8(std::string_view text); ///< "?" for what code page 1252 lacks

/// The text of a column of fixed length without the NUL that it is padded with.
[[nodiscard]] View withoutPadding(const View& stored, Format format);
/// Text as it stands in rows and long values of `format`, decoded into `out`.
void decodeText(const View& stored, Format format, std::string& out);
/// Appends `text` in the stored form; compressed when that is wanted, possible and shorter, and always when
/// it begins with U+FEFF, which would be taken for the mark of compressed text. Only where the compressed
/// form cannot hold such a text (U+0000, or a character like U+0100 whose low byte is zero) does it lose the
/// mark.
void encodeText(std::string_view text, Format format, bool compress, Bytes& out);
/// Characters as the file counts them: UTF-16 units or bytes.
[[nodiscard]] std::size_t storedLength(std::string_view text, Format format);

[[nodiscard]] bool sameName(std::string_view a,
                            std::string_view b); ///< equal but for the case of ASCII letters

} // namespace jet
