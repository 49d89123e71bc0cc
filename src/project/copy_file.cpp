#include "copy_file.h"

#include "basic/files.h"
#include "basic/numbers.h"

#include <array>
#include <charconv>
#include <utility>

namespace project {

namespace {

constexpr std::string_view headingLine = "heading ";
constexpr std::string_view firstLine = "ZavroGrl unsaved book 1";

void addEscaped(std::string& out, std::string_view text) {
    for (const char c : text) {
        switch (c) {
        case '\t':
            out += "\\t";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\\':
            out += "\\\\";
            break;
        default:
            out += c;
        }
    }
}

std::string unescaped(std::string_view text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\' || at + 1 == text.size()) {
            plain += text[at];
            continue;
        }
        ++at;
        plain += text[at] == 't' ? '\t' : text[at] == 'n' ? '\n' : text[at];
    }
    return plain;
}

/// Takes the text up to `end` off the front of `from`; nothing when `end` does not come.
std::optional<std::string_view> take(std::string_view& from, char end) {
    const std::size_t at = from.find(end);
    if (at == std::string_view::npos) return std::nullopt;
    const std::string_view part = from.substr(0, at);
    from.remove_prefix(at + 1);
    return part;
}

/// The value of the next line, which must begin with `name` and a blank.
std::optional<std::string> takeNamed(std::string_view& from, std::string_view name) {
    const std::optional<std::string_view> line = take(from, '\n');
    if (!line || !line->starts_with(name) || line->size() == name.size()) return std::nullopt;
    return unescaped(line->substr(name.size() + 1));
}

std::optional<std::vector<std::string>> parseRow(std::string_view line) {
    std::vector<std::string> cells;
    while (const std::optional<std::string_view> cell = take(line, '\t'))
        cells.push_back(unescaped(*cell));
    cells.push_back(unescaped(line));
    if (cells.size() != sheet::columnCount) return std::nullopt;
    return cells;
}

} // namespace

void writeCopy(const Book& book, std::chrono::system_clock::time_point written, const Sink& sink) {
    constexpr std::size_t part = 4096;
    std::string out(firstLine);
    out.reserve(2 * part);
    const auto line = [&out](std::string_view name, std::string_view value) {
        out += '\n';
        out += name;
        out += ' ';
        addEscaped(out, value);
    };
    line("written", std::to_string(std::chrono::system_clock::to_time_t(written)));
    line("caption", book.Caption);
    line("file", book.FileName);
    line("mark", book.FileMark);
    line("side", std::string(1, book.CurrentSide));
    std::array<char, 32> height{};
    const auto end = std::to_chars(height.data(), height.data() + height.size(), book.CurrentHI).ptr;
    line("height", std::string_view(height.data(), static_cast<std::size_t>(end - height.data())));
    for (std::size_t key = 0; key < sheet::Heading::keys.size(); ++key)
        if (const std::string& text = book.JobHeading.text(key); !text.empty())
            line(std::string(headingLine) + sheet::Heading::keys[key], text);
    const sheet::Grid& grid = book.MSFG;
    for (int row = 1; row < grid.Rows(); ++row) {
        out += "\nrow";
        for (int col = 0; col < grid.Cols(); ++col) {
            out += col == 0 ? ' ' : '\t';
            addEscaped(out, grid.Text(row, col));
        }
        if (out.size() < part) continue;
        sink(out);
        out.clear();
    }
    out += "\nend\n";
    sink(out);
}

std::optional<BookCopy> parseCopy(std::string_view content) {
    if (take(content, '\n') != firstLine) return std::nullopt;
    const auto written = takeNamed(content, "written");
    auto caption = takeNamed(content, "caption");
    auto fileName = takeNamed(content, "file");
    auto mark = takeNamed(content, "mark");
    const auto side = takeNamed(content, "side");
    const auto height = takeNamed(content, "height");
    if (!written || !caption || !fileName || !mark || !side || side->size() != 1 || !height)
        return std::nullopt;

    BookCopy copy;
    std::time_t seconds = 0;
    std::from_chars(written->data(), written->data() + written->size(), seconds);
    copy.written = std::chrono::system_clock::from_time_t(seconds);
    copy.caption = std::move(*caption);
    copy.fileName = std::move(*fileName);
    copy.fileMark = std::move(*mark);
    copy.side = side->front();
    std::from_chars(height->data(), height->data() + height->size(), copy.height);
    while (const std::optional<std::string_view> line = take(content, '\n')) {
        if (*line == "end" && !copy.rows.empty()) return copy;
        if (line->starts_with(headingLine)) {
            const std::string_view text = line->substr(headingLine.size());
            const std::size_t blank = std::min(text.find(' '), text.size() - 1);
            const auto key = sheet::Heading::find(text.substr(0, blank));
            if (key) copy.heading.setText(*key, unescaped(text.substr(blank + 1)));
            continue;
        }
        std::optional<std::vector<std::string>> row;
        if (line->starts_with("row ")) row = parseRow(line->substr(4));
        if (!row) return std::nullopt;
        copy.rows.push_back(std::move(*row));
    }
    return std::nullopt;
}

LockedFile LockedFile::write(const std::string& path, const std::function<void(const Sink& sink)>& content) {
    return basic::during(
        basic::FileAction::OpenForOutput,
        [&] {
            files::Replacement next(path, files::Target::Name, files::Rights::OwnerOnly);
            content([&next](std::string_view part) { next.write(part); });
            next.commit();
            LockedFile file;
            file.m_file = next.takeFile();
            file.m_lock = next.takeLock();
            return file;
        },
        path);
}

LockedFile LockedFile::lock(const std::string& path) {
    LockedFile file;
    try {
        files::OpenFile found(path, files::OpenFor::ReadingNoLink);
        if (files::lockUnshared(found)) file.m_file = std::move(found);
    } catch (const files::Error&) {
        return file; // gone, or not to be read
    }
    return file;
}

std::string LockedFile::read() const {
    return basic::during(basic::FileAction::OpenForInput, [&] { return files::contentOf(m_file); });
}

} // namespace project
