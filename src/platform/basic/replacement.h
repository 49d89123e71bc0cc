#pragma once

#include "files.h"

#include <string>
#include <string_view>

namespace basic {

/// An open file descriptor, closed at the end.
class Descriptor {
  public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor();

    [[nodiscard]] int get() const { return m_descriptor; }
    /// Closes now, so that a late write error is seen; the result of close().
    [[nodiscard]] int close();

  private:
    int m_descriptor;
};

/// The new content of a file, written beside it and renamed over it by `commit`; without a commit the old
/// file stays as it was. A link is followed first, an existing file keeps its mode and owner, and one that
/// its owner made read-only is refused, as the rename alone would not. What is no plain file (a pipe, a
/// device) is written directly.
class Replacement {
  public:
    Replacement(const std::string& path, FileAction action);
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement();

    void write(std::string_view bytes);
    void commit();

  private:
    [[noreturn]] void fail(int errorCode) const;

    FileAction m_action;
    std::string m_path;
    std::string m_sibling; // empty when written directly or committed
    Descriptor m_descriptor;
};

} // namespace basic
