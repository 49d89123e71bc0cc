#include "files.h"

#include "strings.h"
#include "windows1252.h"

#include <algorithm>

namespace basic {
namespace {

// Bytes of the well-formed UTF-8 sequence at the start of `bytes` (Unicode, table 3-7); 0 when there is none.
std::size_t sequence(std::string_view bytes) {
    const auto byte = [bytes](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
    const unsigned lead = byte(0);
    if (lead < 0x80) return 1;
    const std::size_t size = lead >= 0xC2 && lead <= 0xDF   ? 2
                             : (lead & 0xF0) == 0xE0        ? 3
                             : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                            : 0;
    if (size == 0 || bytes.size() < size) return 0;
    const unsigned least = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned most = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (byte(1) < least || byte(1) > most) return 0;
    for (std::size_t at = 2; at < size; ++at) {
        if ((byte(at) & 0xC0) != 0x80) return 0;
    }
    return size;
}

bool isUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t size = sequence(bytes);
        if (size == 0) return false;
        bytes.remove_prefix(size);
    }
    return true;
}

} // namespace

std::string toUtf8(std::string_view bytes) {
    if (isUtf8(bytes)) return std::string(bytes);
    std::string result;
    result.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes)
        append(result, fromWindows1252(static_cast<unsigned char>(c)));
    return result;
}

std::string readFile(std::string_view path, std::size_t limit) {
    std::string content = during(FileAction::OpenForInput, [&] {
        return files::contentOf(files::OpenFile(nativePath(path), files::OpenFor::Reading), limit);
    });
    if (!isUtf8(content)) content = toUtf8(content);
    return content;
}

std::vector<std::string> readLines(std::string_view path, std::size_t limit) {
    const std::string content = readFile(path, limit);
    std::string_view rest = content;
    if (rest.substr(0, 3) == "\xEF\xBB\xBF") rest.remove_prefix(3);
    std::vector<std::string> lines;
    while (!rest.empty()) {
        const auto end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.emplace_back(line);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return lines;
}

void writeFile(std::string_view path, std::string_view content, files::Rights rights) {
    const std::string place = nativePath(path);
    during(
        FileAction::OpenForOutput,
        [&] {
            files::Replacement file(place, files::Target::File, rights);
            file.write(content);
            file.commit();
        },
        place);
}

void writeLines(std::string_view path, const std::vector<std::string>& lines, files::Rights rights) {
    std::string content;
    for (const std::string& line : lines)
        content.append(line).append("\r\n");
    writeFile(path, content, rights);
}

} // namespace basic
