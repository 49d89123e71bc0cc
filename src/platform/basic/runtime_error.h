#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace basic {

/// Numbers of the run-time library's errors that the program raises, tests or shows.
enum ErrorNumber : int {
    InvalidProcedureCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    DivisionByZero = 11,
    TypeMismatch = 13,
    BadFileName = 52,
    FileNotFound = 53,
    FileAlreadyOpen = 55,
    DeviceIoError = 57,
    FileAlreadyExists = 58,
    DiskFull = 61,
    InputPastEnd = 62,
    PermissionDenied = 70,
    PathFileAccessError = 75,
    PathNotFound = 76,
};

/// The run-time library's English text of `number`; "Application-defined or object-defined error" for a
/// number that it does not know.
[[nodiscard]] std::string descriptionOf(int number);

/// A run-time error as every command's handler meets it: a number and a description that can be shown, and
/// the file or folder that it is about where there is one. The database layer raises it too, with the
/// engine's own numbers and words, which name the file themselves.
class RuntimeError : public std::exception {
  public:
    explicit RuntimeError(int number) : RuntimeError(number, descriptionOf(number)) {}
    RuntimeError(int number, std::string description, std::string path = {})
        : m_number(number), m_description(std::move(description)), m_path(std::move(path)) {}

    [[nodiscard]] int number() const noexcept { return m_number; }
    [[nodiscard]] const std::string& description() const noexcept { return m_description; }
    [[nodiscard]] const std::string& path() const noexcept { return m_path; } ///< empty when there is none
    /// The description, and what it is about unless that is `said` already: "File not found: /a/Rod.mdb".
    [[nodiscard]] std::string told(std::string_view said = {}) const;
    /// What a message box shows: the description. A file that was not found is named as well, for it is one
    /// of the program's own that nobody typed.
    [[nodiscard]] std::string shown() const { return m_number == FileNotFound ? told() : m_description; }
    [[nodiscard]] const char* what() const noexcept override { return m_description.c_str(); }

  private:
    int m_number;
    std::string m_description;
    std::string m_path;
};

} // namespace basic
