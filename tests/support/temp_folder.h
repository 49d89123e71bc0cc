#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdlib.h>
#include <string>
#include <string_view>

/// A folder of its own for one test, gone afterwards.
class TempFolder {
  public:
    TempFolder() {
        std::string form = (std::filesystem::temp_directory_path() / "zavrogrl-test-XXXXXX").string();
        if (mkdtemp(form.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
        m_path = form;
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] std::string operator/(std::string_view name) const {
        return m_path + "/" + std::string(name);
    }

    std::string write(std::string_view name, std::string_view content) const {
        std::ofstream(*this / name, std::ios::binary) << content;
        return *this / name;
    }
    [[nodiscard]] std::string read(std::string_view name) const { return readFile(*this / name); }
    /// The bytes of any file; empty when there is none.
    [[nodiscard]] static std::string readFile(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

  private:
    std::string m_path;
};
