#include "backup.h"

#include "basic/files.h"
#include "marks.h"

#include "files/replacement.h"

namespace project {

namespace {

/// The name `to` becomes a copy of `path` as private as that is, whatever stood there.
void keepCopy(const std::string& path, const std::string& to) {
    const files::OpenFile version = basic::during(basic::FileAction::Copy, [&] {
        return files::OpenFile(basic::nativePath(path), files::OpenFor::Reading);
    });
    basic::during(
        basic::FileAction::Copy,
        [&] {
            files::Replacement copy(basic::nativePath(to), version);
            copy.copy(version);
            copy.commit();
        },
        to);
}

/// A name for another writer's version that no later save takes again.
std::string freeName(const std::string& path) {
    for (int number = 1;; ++number) {
        std::string name = path + ".other-" + std::to_string(number) + ".bak";
        if (!basic::fileExists(name)) return name;
    }
}

} // namespace

bool backUp(const Book& book, Report& report) {
    const std::string path = book.projectPath();
    const bool foreign = !book.FileMark.empty() && basic::fileExists(path) && fileMark(path) != book.FileMark;
    bool kept = report.attempt("No backup was made", [&] { keepCopy(path, path + ".bak"); }).empty();
    if (foreign) {
        const std::string own = freeName(path);
        const bool keptApart =
            report.attempt("No copy of its own was made", [&] { keepCopy(path, own); }).empty();
        kept = kept || keptApart;
        report.add(kept ? "Another program changed the file; its version is kept as " +
                              (keptApart ? own : path + ".bak") + "."
                        : "Another program changed the file, so the book was not saved over it.");
    }
    return kept || !foreign;
}

} // namespace project
