#pragma once

#include <exception>
#include <string>
#include <system_error>

namespace files {

/// A call about a file that failed: the system's error number (errno) and the path.
class Error : public std::exception {
  public:
    Error(int code, std::string path)
        : m_code(code),
          m_path(std::move(path)),
          m_text(std::generic_category().message(code) + ": '" + m_path + "'") {}

    [[nodiscard]] int code() const noexcept { return m_code; }
    [[nodiscard]] const std::string& path() const noexcept { return m_path; }
    [[nodiscard]] const char* what() const noexcept override { return m_text.c_str(); }

  private:
    int m_code;
    std::string m_path;
    std::string m_text;
};

} // namespace files
