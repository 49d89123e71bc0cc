#include "formats.h"

#include "basic/files.h"
#include "basic/strings.h"

#include <algorithm>
#include <array>
#include <map>

namespace tables {
namespace {

constexpr std::size_t sampleLines = 200;
constexpr std::size_t mostNamedLines = 20;

/// UTF-16 as UTF-8; half a surrogate pair becomes U+FFFD.
std::string fromUtf16(std::string_view bytes, bool bigEndian) {
    std::string text;
    text.reserve(bytes.size());
    const auto unit = [&](std::size_t at) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return static_cast<char32_t>(bigEndian ? first << 8 | second : second << 8 | first);
    };
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        char32_t code = unit(at);
        if (code >= 0xD800 && code < 0xDC00 && at + 3 < bytes.size() && (unit(at + 2) & 0xFC00) == 0xDC00) {
            code = 0x10000 + ((code & 0x3FF) << 10) + (unit(at + 2) & 0x3FF);
            at += 2;
        }
        basic::append(text, code >= 0xD800 && code < 0xE000 ? U'\uFFFD' : code);
    }
    return text;
}

/// Without a mark, UTF-16 shows by the zero halves of its ASCII characters.
std::string decoded(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) return basic::toUtf8(bytes.substr(3));
    if (bytes.starts_with("\xFF\xFE")) return fromUtf16(bytes.substr(2), false);
    if (bytes.starts_with("\xFE\xFF")) return fromUtf16(bytes.substr(2), true);
    std::array<std::size_t, 2> zeros{};
    const std::string_view sample = bytes.substr(0, 4096);
    for (std::size_t at = 0; at < sample.size(); ++at)
        zeros[at % 2] += sample[at] == '\0';
    if (zeros[1] > sample.size() / 4 && zeros[0] == 0) return fromUtf16(bytes, false);
    if (zeros[0] > sample.size() / 4 && zeros[1] == 0) return fromUtf16(bytes, true);
    return basic::toUtf8(bytes);
}

void refuseBinary(std::string_view text) {
    const auto isControl = [](char c) {
        return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r' && c != '\f' &&
               c != '\x1A';
    };
    const auto found = std::ranges::find_if(text, isControl);
    if (found != text.end())
        throw Unreadable("This is no table: line " +
                         std::to_string(1 + std::count(text.begin(), found, '\n')) +
                         " holds a character that no text has");
}

/// Cuts a text into records; a quoted field may hold separators and line ends.
class Records {
  public:
    Records(std::string_view text, char separator) : m_rest(text), m_separator(separator) {}

    /// The next record, or false at the end. `line` is where it begins.
    bool next(std::vector<std::string>& fields, int& line) {
        if (m_rest.empty()) return false;
        line = m_line;
        fields.clear();
        bool more = true;
        while (more) {
            std::string& field = fields.emplace_back();
            if (m_rest.starts_with('"')) takeQuoted(field);
            const std::size_t end = m_rest.find_first_of({m_stops.data(), m_stops.size()});
            const std::size_t length = std::min(end, m_rest.size());
            field += m_rest.substr(0, length);
            m_rest.remove_prefix(length);
            more = !m_rest.empty() && m_rest.front() == m_separator;
            if (more) {
                m_rest.remove_prefix(1);
            } else if (!m_rest.empty()) {
                m_rest.remove_prefix(m_rest.starts_with("\r\n") ? 2 : 1);
                ++m_line;
            }
            if (fields.size() > static_cast<std::size_t>(mostColumns) + 1) fields.pop_back();
        }
        return true;
    }

  private:
    // A quote that is never closed is a character like any other.
    void takeQuoted(std::string& field) {
        std::string text;
        std::string_view rest = m_rest.substr(1);
        for (;;) {
            const std::size_t quote = rest.find('"');
            if (quote == std::string_view::npos) {
                field += '"';
                m_rest.remove_prefix(1);
                return;
            }
            text += rest.substr(0, quote);
            rest.remove_prefix(quote + 1);
            if (!rest.starts_with('"')) break;
            text += '"';
            rest.remove_prefix(1);
        }
        m_line += static_cast<int>(std::ranges::count(text, '\n'));
        field += text;
        m_rest = rest;
    }

    std::string_view m_rest;
    char m_separator;
    std::array<char, 3> m_stops{m_separator, '\r', '\n'};
    int m_line = 1;
};

/// The number of fields that most of the first lines have.
std::size_t usualFields(std::string_view text, char separator) {
    Records records(text, separator);
    std::map<std::size_t, std::size_t> counts;
    std::vector<std::string> fields;
    int line = 0;
    for (std::size_t k = 0; k < sampleLines && records.next(fields, line); ++k)
        if (fields.size() > 1 || !basic::trim(fields[0]).empty()) ++counts[fields.size()];
    std::size_t usual = 1;
    for (const auto& [number, times] : counts)
        if (times > counts[usual]) usual = number;
    return usual;
}

const std::array<char, 3> separators{'\t', ';', ','};

/// True for a line that has one field by `separator` but `usual` ones by another.
bool hasOtherSeparator(const std::string& line, char separator, std::size_t usual, char& other) {
    for (const char candidate : separators) {
        const auto count = static_cast<std::size_t>(std::ranges::count(line, candidate));
        if (candidate == separator || count == 0 || count + 2 < usual || count > usual) continue;
        other = candidate;
        return true;
    }
    return false;
}

} // namespace

void readDelimited(std::string_view bytes, Writer& out) {
    const std::string text = decoded(bytes);
    refuseBinary(text);
    char separator = ',';
    std::size_t usual = 1;
    for (const char candidate : separators) {
        usual = usualFields(text, candidate);
        separator = candidate;
        if (usual > 1) break;
    }
    out.sheet("");
    out.chosen(0);
    out.separator(separator);
    Records records(text, separator);
    std::vector<std::string> fields;
    std::size_t otherLines = 0;
    for (int line = 0; records.next(fields, line);) {
        char other = 0;
        if (usual > 2 && fields.size() == 1 && hasOtherSeparator(fields[0], separator, usual, other)) {
            if (++otherLines <= mostNamedLines)
                out.note("Line " + std::to_string(line) + " is separated by " +
                         (other == '\t' ? "tabs" : std::string("\"") + other + "\"") +
                         ", the others are not; left out");
            continue;
        }
        const bool blank =
            std::ranges::all_of(fields, [](const std::string& field) { return basic::trim(field).empty(); });
        if (blank) continue;
        int column = 0;
        for (std::string& field : fields)
            out.cell(line, ++column, {field.empty() ? CellKind::Empty : CellKind::Text, 0, std::move(field)});
    }
    if (otherLines > mostNamedLines)
        out.note(std::to_string(otherLines - mostNamedLines) + " more lines with another separator left out");
    out.end();
}

} // namespace tables
