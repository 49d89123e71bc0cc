#include "new_file.h"

#include "basic/files.h"
#include "basic/strings.h"
#include "project_file.h"

#include <cerrno>
#include <optional>

namespace project {

namespace {

/// The byte where the last `characters` characters begin, or npos when there are fewer.
std::size_t tailOf(std::string_view text, int characters) {
    std::size_t at = text.size();
    while (characters > 0) {
        if (at == 0) return std::string_view::npos;
        --at;
        if ((static_cast<unsigned char>(text[at]) & 0xC0) != 0x80) --characters;
    }
    return at;
}

files::Replacement copyOfTemplate(desktop::Desktop& desktop, std::string_view target) {
    const std::optional<files::Status> there =
        basic::during(basic::FileAction::Copy, [&] { return files::statusOf(basic::nativePath(target)); });
    if (there && there->kind != files::Status::Kind::Plain)
        basic::raiseFileError(basic::FileAction::OpenForOutput, EISDIR, std::string(target));
    return basic::readyCopy(desktop::programFile(desktop, templateName), target);
}

} // namespace

std::string fixExtension(std::string path) {
    const std::size_t tail = tailOf(path, 4);
    if (tail != std::string::npos) {
        if (basic::sameText(std::string_view(path).substr(tail), ".grl")) return path;
        if (path[tail] == '.') return path.replace(tail + 1, std::string::npos, "grl");
    }
    return path + "grl";
}

NewFile::NewFile(desktop::Desktop& desktop, std::string_view target)
    : m_file(copyOfTemplate(desktop, target)) {}

bool NewFile::commit(desktop::Desktop& desktop) {
    basic::during(
        basic::FileAction::Copy, [&] { m_file.finish(); },
        m_file.target()); // ready before the other one goes
    const bool trashed = basic::fileExists(m_file.target()) && desktop.moveToTrash(m_file.target());
    basic::place(m_file);
    return trashed;
}

} // namespace project
