#pragma once

#include "survey/runs.h"

#include <QString>

#include <cstdint>
#include <set>
#include <string>

namespace shell {

/// What the program remembers of a book beside its file, by the file's path: how its run is judged, and the
/// findings that were set aside. One file of the program's own in the desktop's state folder; a book without
/// a file is not remembered.
class BookMemory {
  public:
    /// `folder` empty: the user's own, below the XDG state home.
    explicit BookMemory(const std::string& folder = {});

    [[nodiscard]] survey::Closing closing(const std::string& path) const;
    void keep(const std::string& path, const survey::Closing& closing) const;
    [[nodiscard]] std::set<std::uint64_t> aside(const std::string& path) const;
    void keep(const std::string& path, const std::set<std::uint64_t>& aside) const;
    [[nodiscard]] double staff() const; ///< metres; of all books
    void keepStaff(double metres) const;

  private:
    template <typename Change>
    void change(const std::string& path, Change&& change) const;

    QString m_file;
};

} // namespace shell
