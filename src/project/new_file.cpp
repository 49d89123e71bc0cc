#include "new_file.h"

#include "basic/files.h"
#include "basic/strings.h"
#include "project_file.h"

#include <cerrno>
#include <optional>

namespace project {

namespace {

files::Replacement copyOfTemplate(desktop::Desktop& desktop, std::string_view target) {
    const std::optional<files::Status> there =
        basic::during(basic::FileAction::Copy, [&] { return files::statusOf(basic::nativePath(target)); });
    if (there && there->kind != files::Status::Kind::Plain)
        basic::raiseFileError(basic::FileAction::OpenForOutput, EISDIR, std::string(target));
    return basic::readyCopy(desktop::programFile(desktop, templateName), target);
}

} // namespace

std::string fixExtension(std::string path) {
    const std::string_view tail = basic::right(path, 4);
    if (basic::length(tail) == 4) {
        if (basic::sameText(tail, ".grl")) return path;
        if (tail.front() == '.') return path.replace(path.size() - tail.size() + 1, std::string::npos, "grl");
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
