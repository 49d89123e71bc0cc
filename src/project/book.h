#pragma once

#include "sheet/book.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace project {

/// The book that the main window holds, with the files that it comes from and goes to.
struct Book : sheet::Book {
    std::string CurrentFile; ///< path of the open project
    std::string Caption{untitledCaption};
    std::string FileName = "*.grl";  ///< cdl1.FileName: the path that the common file dialog holds
    std::array<std::string, 4> mnuX; ///< paths of the menu entries mnuX1 to mnuX4; empty: not shown yet
    std::uint64_t SavedMark = 0;     ///< mark of the grid as last made, loaded or saved; 0: all is empty
    std::string FileMark;            ///< which version of the project file that was; empty: none known
    std::uint64_t ImportMark = 0;    ///< mark of the grid as an import left it
    std::uint64_t AsideMark = 0;     ///< mark of the grid that was last set aside
    std::string AsideCopy;           ///< and where that copy is
    std::string DefaultFolder = "C:\\Road"; ///< parent of the project folders that the transfer makes

    static constexpr const char* captionPrefix = "ZavroGrl-";
    static constexpr const char* untitledCaption = "ZavroGRL-NoName.grl";

    /// The project's path: the caption behind its prefix (cut by the prefix's length). "NoName.grl" or an
    /// empty text while the book has no file.
    [[nodiscard]] std::string projectPath() const;
    [[nodiscard]] bool hasFile() const;
    void setProjectPath(std::string_view path);
};

} // namespace project
