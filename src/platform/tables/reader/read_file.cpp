#include "formats.h"

#include <array>
#include <fstream>
#include <iterator>

namespace tables {
namespace {

constexpr std::size_t mostBytes = std::size_t{256} << 20;

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(file), {});
    if (!file) throw Unreadable("The file cannot be read");
    return bytes;
}

/// A compound file: a workbook of before 2007, or a newer one that was encrypted.
[[noreturn]] void refuseCompound(std::string_view bytes) {
    std::string name;
    for (const char c : std::string_view("EncryptedPackage"))
        name += {c, '\0'};
    if (bytes.find(name) != std::string_view::npos)
        throw Unreadable("The file is encrypted; save it without a password");
    throw Unreadable("This is a workbook of the old format (.xls); save it as .xlsx or .ods");
}

void readPacked(const std::string& path, const Wanted& wanted, Writer& out) {
    const std::unique_ptr<Parts> parts = openZip(path);
    const auto has = [&parts](const char* name) {
        return parts->read(name, [](std::string_view) { return false; });
    };
    if (has("[Content_Types].xml") || has("xl/workbook.xml"))
        readXlsx(*parts, wanted, out);
    else if (has("content.xml") || has("encrypted-package")) // the manifest says so
        readOds(*parts, wanted, out);
    else
        throw Unreadable("This is a packed file, but no workbook");
}

} // namespace

void readFile(const std::string& path, const Wanted& wanted, Writer& out) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) throw Unreadable("The file cannot be opened");
    const auto size = static_cast<std::streamoff>(file.tellg());
    if (size < 0 || static_cast<std::size_t>(size) > mostBytes)
        throw Unreadable("The file is larger than 256 MB");
    if (size == 0) throw Unreadable("The file is empty");
    std::array<char, 8> room{};
    file.seekg(0);
    file.read(room.data(), room.size());
    const std::string_view start(room.data(), static_cast<std::size_t>(file.gcount()));
    if (start.starts_with("PK\x03\x04") || start.starts_with("PK\x05\x06"))
        return readPacked(path, wanted, out);
    const std::string bytes = contentOf(path);
    if (start.starts_with("\xD0\xCF\x11\xE0")) refuseCompound(bytes);
    if (start.starts_with("<") || start.starts_with("\xEF\xBB\xBF<"))
        throw Unreadable(
            "This is an XML or HTML file, not a workbook; open it in a spreadsheet program and save it "
            "as .xlsx or .ods");
    if (start.starts_with("%PDF")) throw Unreadable("This is a PDF file, not a table");
    if (wanted && !wanted->empty()) throw Unreadable("There is no sheet \"" + *wanted + "\"");
    readDelimited(bytes, out);
}

} // namespace tables
