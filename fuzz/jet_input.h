#pragma once

#include "memory_disk.h"
#include "page_mutator.h"
#include "pager.h"

#include "jet/error.h"

#include <bit>
#include <map>
#include <optional>
#include <span>
#include <string>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace fuzz {

/// Bytes of a page, by the version that the header names.
inline std::size_t pageSizeOf(std::span<const std::uint8_t> data) {
    return data.size() > 0x14 && data[0x14] == 0 ? 2048 : 4096;
}

/// What of the input is the file; the tail behind its last page is a script.
inline std::size_t fileBytes(std::span<const std::uint8_t> data) {
    return data.size() - data.size() % pageSizeOf(data);
}

/// Damages pages, more rarely the script, and sometimes anything at all.
inline std::size_t mutate(std::uint8_t* data, std::size_t size, std::size_t most, unsigned seed) {
    const std::span<std::uint8_t> input(data, size);
    const std::size_t file = fileBytes(input);
    const unsigned choice = seed % 16;
    if (choice == 0) return LLVMFuzzerMutate(data, size, most);
    if (choice < 5) {
        const std::size_t room = std::min(most - file, pageSizeOf(input) - 1);
        if (room > 0 && most > file)
            return file + LLVMFuzzerMutate(data + file, size - file, std::min<std::size_t>(room, 600));
    }
    damagePages(input.first(file), pageSizeOf(input), seed);
    return size;
}

/// Runs `action`; errors of the engine are what damage may lead to. False when there was one.
template <typename Action>
bool tolerant(Action action) {
    try {
        action();
        return true;
    } catch (const jet::Error&) {
        return false;
    }
}

/// Opens with the password that the file itself has.
inline std::optional<jet::Database> open(const jet::MemoryDisk& disk, jet::OpenMode mode) {
    std::optional<jet::Database> db;
    (void)tolerant([&] {
        const jet::Bytes& content = disk.content();
        const std::string password =
            jet::Pager(std::make_unique<jet::MemoryFile>(content), jet::OpenMode::ReadOnly).password();
        if (!password.empty()) (void)tolerant([&] { (void)disk.open("x" + password, mode); });
        db = disk.open(password, mode);
    });
    return db;
}

/// Every row by its table and home, as text that tells any two values apart; numbers that are no numbers too.
using Content = std::map<std::string, std::map<jet::RowId, std::string>>;

inline std::string textOf(const jet::Value& value) {
    std::string text = std::to_string(value.index()) + ":";
    std::visit(
        [&text](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, jet::Null>)
                text += "-";
            else if constexpr (std::is_same_v<Held, std::string>)
                text += held;
            else if constexpr (std::is_same_v<Held, jet::Bytes>)
                text.append(held.begin(), held.end());
            else if constexpr (std::is_same_v<Held, jet::Guid>)
                text.append(held.bytes.begin(), held.bytes.end());
            else if constexpr (std::is_same_v<Held, jet::Numeric>)
                text.append(1, held.negative ? '-' : '+')
                    .append(held.magnitude.begin(), held.magnitude.end());
            else if constexpr (std::is_same_v<Held, float>)
                text += std::to_string(std::bit_cast<std::uint32_t>(held));
            else if constexpr (std::is_same_v<Held, double>)
                text += std::to_string(std::bit_cast<std::uint64_t>(held));
            else if constexpr (std::is_same_v<Held, jet::DateTime>)
                text += std::to_string(std::bit_cast<std::uint64_t>(held.days));
            else if constexpr (std::is_same_v<Held, jet::Currency>)
                text += std::to_string(held.tenThousandths);
            else
                text += std::to_string(held);
        },
        value);
    return text;
}

/// The rows of one table. Throws jet::Error.
inline std::map<jet::RowId, std::string> rowsOf(const jet::Table& table) {
    std::map<jet::RowId, std::string> rows;
    for (jet::Cursor cursor = table.scan(); cursor.next();) {
        std::string& text = rows[cursor.id()];
        for (const jet::Value& value : cursor.row())
            text += textOf(value) + "|";
    }
    return rows;
}

} // namespace fuzz
