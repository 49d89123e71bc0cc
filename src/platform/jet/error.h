#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace jet {

/// What went wrong, so that callers can tell the cases apart.
enum class ErrorKind {
    NotADatabase,       ///< no Jet file at all
    UnsupportedVersion, ///< a later file format (.accdb)
    WrongPassword,
    Corrupt,         ///< damaged; page() and offset() say where
    EncodedWrite,    ///< the file is encoded: it can be read, not changed
    UnsupportedSort, ///< text sorted in a way that is not known: its keys cannot be made, nor rows added or
                     ///< deleted
    DuplicateKey,
    NullKey,       ///< Null in a column of a primary key or of an index that requires a value
    NotFound,      ///< no such table, column, index or row
    AlreadyExists, ///< table, column, index or file of that name
    TextTooLong,   ///< text or bytes longer than the column
    TypeMismatch,  ///< the value is of another type than the column
    RowTooLong,
    InvalidDesign,     ///< a table, column or index that the format cannot hold
    Full,              ///< disk full, or the file would exceed the format's limit
    ChangedUnderneath, ///< another program changed the file since it was opened
    ReadOnly,          ///< opened for reading, or made read-only by its owner
    PermissionDenied,
    FileNotFound,
    FolderNotFound,
    InUse, ///< held by another process
    Io,
};

/// The one exception of the engine.
class Error : public std::exception {
  public:
    static constexpr std::uint32_t noPage = 0xFFFFFFFF;

    Error(ErrorKind kind, std::string text) : m_kind(kind), m_text(std::move(text)) {}
    /// A damaged place; the text gets the page and offset.
    static Error corrupt(std::uint32_t page, std::uint32_t offset, const std::string& what);

    [[nodiscard]] ErrorKind kind() const noexcept { return m_kind; }
    [[nodiscard]] const std::string& text() const noexcept { return m_text; }
    [[nodiscard]] std::uint32_t page() const noexcept { return m_page; }     ///< of Corrupt; else noPage
    [[nodiscard]] std::uint32_t offset() const noexcept { return m_offset; } ///< within the page
    [[nodiscard]] const char* what() const noexcept override { return m_text.c_str(); }

  private:
    ErrorKind m_kind;
    std::string m_text;
    std::uint32_t m_page = noPage;
    std::uint32_t m_offset = 0;
};

} // namespace jet
