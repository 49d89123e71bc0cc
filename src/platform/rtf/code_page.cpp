#include "code_page.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iconv.h>

namespace rtf {

namespace {

constexpr int kWestern = 1252;

// What iconv_open answers when it cannot. NOLINTNEXTLINE(performance-no-int-to-ptr): POSIX will have it so.
const iconv_t kNone = reinterpret_cast<iconv_t>(-1);

std::string nameOf(int page) {
    switch (page) {
    case 1361:
        return "JOHAB";
    case 10000:
        return "MACINTOSH";
    case 65001:
        return "UTF-8";
    default:
        return "CP" + std::to_string(page);
    }
}

// The two bullets that word processors take from the symbol font; the rest is read as Western text.
void appendSymbols(std::string& out, std::string_view bytes, CodePage& pages) {
    for (const char c : bytes) {
        if (c == '\xB7')
            out += "\u2022";
        else if (c == '\xA7')
            out += "\u25AA";
        else
            pages.append(out, std::string_view(&c, 1), kWestern);
    }
}

bool isAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

} // namespace

int pageOfCharset(int charset, int standard) {
    switch (charset) {
    case 0:
        return kWestern;
    case 2:
        return kSymbolPage;
    case 77:
        return 10000;
    case 128:
        return 932;
    case 129:
        return 949;
    case 130:
        return 1361;
    case 134:
        return 936;
    case 136:
        return 950;
    case 161:
        return 1253;
    case 162:
        return 1254;
    case 163:
        return 1258;
    case 177:
        return 1255;
    case 178:
        return 1256;
    case 186:
        return 1257;
    case 204:
        return 1251;
    case 222:
        return 874;
    case 238:
        return 1250;
    case 254:
        return 437;
    case 255:
        return 850;
    default:
        return standard;
    }
}

struct CodePage::Converter {
    int page = 0;
    iconv_t handle = kNone;

    Converter() = default;
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() { close(); }

    void close() {
        if (handle != kNone) iconv_close(handle);
        handle = kNone;
    }
    bool use(int wanted) {
        if (page == wanted) return handle != kNone;
        close();
        page = wanted;
        handle = iconv_open("UTF-8", nameOf(wanted).c_str());
        return handle != kNone;
    }
};

CodePage::CodePage() : m_converter(std::make_unique<Converter>()) {}
CodePage::~CodePage() = default;

void CodePage::append(std::string& out, std::string_view bytes, int page) {
    if (isAscii(bytes)) {
        out += bytes;
        return;
    }
    if (page == kSymbolPage) return appendSymbols(out, bytes, *this);
    if (!m_converter->use(page) && !m_converter->use(kWestern)) {
        out += "\uFFFD";
        return;
    }
    iconv(m_converter->handle, nullptr, nullptr, nullptr, nullptr);
    std::string source(bytes);
    char* from = source.data();
    std::size_t left = source.size();
    std::array<char, 512> buffer;
    while (left > 0) {
        char* to = buffer.data();
        std::size_t room = buffer.size();
        const std::size_t result = iconv(m_converter->handle, &from, &left, &to, &room);
        const int reason = result == static_cast<std::size_t>(-1) ? errno : 0;
        out.append(buffer.data(), buffer.size() - room);
        if (reason == EILSEQ || reason == EINVAL) {
            out += "\uFFFD";
            ++from;
            --left;
        } else if (reason != 0 && reason != E2BIG) {
            return;
        }
    }
}

void appendUtf8(std::string& out, char32_t c) {
    if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
    const auto tail = [&out](char32_t bits) { out += static_cast<char>(0x80 | (bits & 0x3F)); };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        tail(c);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        tail(c >> 6);
        tail(c);
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        tail(c >> 12);
        tail(c >> 6);
        tail(c);
    }
}

} // namespace rtf
