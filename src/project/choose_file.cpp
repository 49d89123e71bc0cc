#include "choose_file.h"

#include <optional>

namespace project {

bool chooseFile(Book& book, desktop::Desktop& desktop, desktop::FileDialog kind, const std::string& before) {
    std::optional<std::string> chosen = desktop.fileDialog(kind, book.FileName);
    const bool named = chosen && !chosen->empty() && (*chosen != noFile);
    book.FileName = named ? std::move(*chosen) : before;
    return named;
}

} // namespace project
