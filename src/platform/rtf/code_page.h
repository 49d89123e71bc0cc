#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace rtf {

/// Bytes that stand for themselves in a symbol font; no code page of the system.
inline constexpr int kSymbolPage = 42;

/// The code page of a font's character set number; `standard` where it names none.
[[nodiscard]] int pageOfCharset(int charset, int standard);

/// Turns bytes of Windows, DOS and Macintosh code pages into UTF-8.
class CodePage {
  public:
    CodePage();
    ~CodePage();
    CodePage(const CodePage&) = delete;
    CodePage& operator=(const CodePage&) = delete;

    /// Appends `bytes` of code page `page`; what does not decode becomes U+FFFD. An unknown page is read as
    /// Windows-1252.
    void append(std::string& out, std::string_view bytes, int page);

  private:
    struct Converter;
    std::unique_ptr<Converter> m_converter;
};

/// Appends one character; a surrogate or a value beyond Unicode becomes U+FFFD.
void appendUtf8(std::string& out, char32_t character);

} // namespace rtf
