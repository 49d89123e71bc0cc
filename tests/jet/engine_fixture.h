#pragma once

#include "database.h"
#include "error.h"
#include "memory_disk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace jet {

/// Numbers that are the same in every run.
class Random {
  public:
    explicit Random(unsigned seed) : m_engine(seed) {}
    std::uint32_t operator()() { return static_cast<std::uint32_t>(m_engine()); }

  private:
    std::mt19937 m_engine;
};

/// Paths of the databases made by Access; a single empty one where they are not at hand.
inline std::vector<std::string> samples() {
    const std::string folder = ZAVRO_JET_SAMPLES;
    if (folder.empty()) return {""};
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".mdb") paths.push_back(entry.path().string());
    std::ranges::sort(paths);
    return paths;
}

inline std::string sampleName(const std::string& path) {
    std::string name = path.empty() ? "none" : std::filesystem::path(path).stem().string();
    std::erase(name, '-');
    return name;
}

inline Bytes contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
}

inline std::string passwordOf(const std::string& path) {
    return path.find("password") != std::string::npos ? "password" : "";
}

/// The kind of the Error that `action` ends with; nothing when it succeeds.
template <typename Action>
std::optional<ErrorKind> errorOf(Action action) {
    try {
        action();
    } catch (const Error& error) {
        return error.kind();
    }
    return std::nullopt;
}

using Rows = std::map<RowId, Row>;

inline Rows rowsOf(const Table& table) {
    Rows rows;
    for (Cursor cursor = table.scan(); cursor.next();)
        rows.emplace(cursor.id(), cursor.row());
    return rows;
}

/// Every index has exactly the rows it should, and finds each by its key.
inline void expectIndexesMatch(const Table& table) {
    const Rows rows = rowsOf(table);
    EXPECT_EQ(rows.size(), table.rowCount()) << table.name();
    for (std::size_t i = 0; i < table.indexes().size(); ++i) {
        const IndexInfo& index = table.indexes()[i];
        if (!index.seekable) continue;
        std::size_t expected = 0;
        for (const auto& [id, row] : rows) {
            std::vector<Value> key;
            for (const IndexInfo::Part& part : index.columns)
                key.push_back(row[static_cast<std::size_t>(part.column)]);
            if (index.ignoreNulls && std::ranges::all_of(key, isNull)) continue;
            ++expected;
            const std::vector<RowId> found = table.seekAll(static_cast<int>(i), key);
            EXPECT_EQ(std::ranges::count(found, id), 1) << table.name() << "." << index.name;
        }
        EXPECT_EQ(table.seekAll(static_cast<int>(i), {}).size(), expected)
            << table.name() << "." << index.name;
    }
}

} // namespace jet
