#include "foreign_tree.h"

#include "jet/check.h"
#include "jet/database.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>

// Index trees of three levels and more as other programs build them, with a tail in every lowest node or in
// some, changed by a script: the input. A commit succeeds, and the file has no fault afterwards.

namespace {

using jet::Value;

constexpr int rowsAtFirst = 120;
constexpr int gap = 16; ///< between the numbers of the first rows

/// Keys of all lengths, so that few or many fit a page.
std::string keyOf(int number, std::size_t length) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%06d", number);
    return digits + std::string(length, static_cast<char>('a' + number % 3));
}

struct Base {
    std::size_t perPage;
    jet::Tails tails;
    std::size_t length;
};

jet::Bytes build(const Base& base) {
    const jet::MemoryDisk disk;
    jet::Database db = disk.create();
    jet::Table table =
        db.createTable({.name = "T",
                        .columns = {{.name = "K"}, {.name = "N", .type = jet::ColumnType::Long}},
                        .indexes = {{.name = "K", .columns = {{"K"}}, .kind = jet::IndexKind::PrimaryKey},
                                    {.name = "N", .columns = {{"N", false}, {"K"}}}}});
    for (int i = 0; i < rowsAtFirst; ++i)
        table.insert({keyOf(i * gap, base.length), i * gap});
    db.commit();
    return jet::withForeignTrees(disk.content(), "T", base.perPage, base.tails);
}

const std::pair<Base, jet::Bytes>& baseOf(std::uint8_t choice) {
    static const std::vector<Base> bases{{2, jet::Tails::Every, 5},
                                         {4, jet::Tails::Every, 200},
                                         {3, jet::Tails::EverySecond, 60},
                                         {8, jet::Tails::Every, 240}};
    static std::map<std::size_t, std::pair<Base, jet::Bytes>> built;
    const std::size_t number = choice % bases.size();
    if (!built.contains(number)) built.emplace(number, std::pair(bases[number], build(bases[number])));
    return built.at(number);
}

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "%s\n", what.c_str());
    std::abort();
}

/// The file, its rows by number, and the changes of a script.
class Changer {
  public:
    explicit Changer(const std::pair<Base, jet::Bytes>& base)
        : m_length(base.first.length), m_disk(base.second) {
        reopen();
        for (jet::Cursor cursor = m_table->scan(); cursor.next();)
            m_rows.emplace(std::get<std::int32_t>(cursor.row()[1]), cursor.id());
    }

    void step(std::uint8_t what, std::uint8_t place, std::uint8_t detail) {
        const int number = place * rowsAtFirst * gap / 256 + detail % gap;
        switch (what % 8) {
        case 0:
            return insert(number, m_length);
        case 1:
            return insert(number, std::min<std::size_t>(detail, 249));
        case 2: // a run behind a place
            for (int i = 0; i < detail % 64; ++i)
                insert(number + i, m_length);
            return;
        case 3: // at the end
            for (int i = 0; i < detail % 64; ++i)
                insert(rowsAtFirst * gap + place * 64 + i, m_length);
            return;
        case 4:
            return erase(number, 1);
        case 5:
            return erase(number, detail);
        case 6:
            return update(number, number + detail);
        default:
            if (detail % 8 == 0) commit();
        }
    }

    void commit() {
        try {
            m_db->commit();
        } catch (const jet::Error& error) {
            fail("a sound file could not be written: " + error.text());
        }
        reopen();
        const std::vector<std::string> faults = jet::check(*m_db);
        if (!faults.empty()) fail("a sound file is no more: " + faults.front());
        if (m_table->seekAll(0, {}).size() != m_rows.size()) fail("rows are lost");
    }

  private:
    void reopen() {
        m_db = m_disk.open();
        m_table = m_db->table("T");
    }
    void insert(int number, std::size_t length) {
        if (m_rows.contains(number)) return;
        m_rows.emplace(number, m_table->insert({keyOf(number, length), number}));
    }
    void erase(int from, int count) {
        for (auto at = m_rows.lower_bound(from); count-- > 0 && at != m_rows.end(); at = m_rows.erase(at))
            m_table->erase(at->second);
    }
    void update(int from, int to) {
        const auto at = m_rows.lower_bound(from);
        if (at == m_rows.end() || m_rows.contains(to)) return;
        m_table->update(at->second, {keyOf(to, m_length), to});
        m_rows.emplace(to, at->second);
        m_rows.erase(at);
    }

    std::size_t m_length;
    jet::MemoryDisk m_disk;
    std::optional<jet::Database> m_db;
    std::optional<jet::Table> m_table;
    std::map<int, jet::RowId> m_rows;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    Changer changer(baseOf(data[0]));
    for (std::size_t at = 1; at + 2 < size; at += 3)
        changer.step(data[at], data[at + 1], data[at + 2]);
    changer.commit();
    return 0;
}
