#pragma once

#include <array>
#include <cstdio>
#include <optional>
#include <string>

/// A command's standard output; nothing when it cannot be run or fails.
inline std::optional<std::string> outputOf(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return std::nullopt;
    std::string output;
    std::array<char, 4096> part;
    while (const std::size_t count = fread(part.data(), 1, part.size(), pipe))
        output.append(part.data(), count);
    if (pclose(pipe) != 0) return std::nullopt;
    return output;
}
