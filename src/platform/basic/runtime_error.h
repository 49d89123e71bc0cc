#pragma once

#include <exception>
#include <string>

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

/// A run-time error as every command's handler meets it: a number and a description that can be shown.
/// The database layer raises it too, with the engine's own numbers and words.
class RuntimeError : public std::exception {
  public:
    explicit RuntimeError(int number) : RuntimeError(number, descriptionOf(number)) {}
    RuntimeError(int number, std::string description)
        : m_number(number), m_description(std::move(description)) {}

    [[nodiscard]] int number() const noexcept { return m_number; }
    [[nodiscard]] const std::string& description() const noexcept { return m_description; }
    [[nodiscard]] const char* what() const noexcept override { return m_description.c_str(); }

  private:
    int m_number;
    std::string m_description;
};

} // namespace basic
