#include "jet_input.h"

#include "jet/check.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

using jet::ColumnType;

/// The tail of the input, byte by byte; zeros behind its end. Without a tail a script that does a bit of
/// everything.
class Script {
  public:
    explicit Script(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}
    bool more() const { return m_at < m_bytes.size(); }
    std::uint8_t next() { return m_at < m_bytes.size() ? m_bytes[m_at++] : std::uint8_t{0}; }

  private:
    std::span<const std::uint8_t> m_bytes;
    std::size_t m_at = 0;
};

constexpr std::array<std::uint8_t, 60> usualScript{
    0, 200, 1, 9, 0, 37, 2, 3, 0, 91, 4, 12, 7, 0, 14, 1, 3, 2, 1,  5, 10,  3, 0, 50, 1, 0, 4,  2, 0, 255,
    6, 0,   7, 5, 2, 0,  1, 3, 0, 77, 4, 11, 0, 8, 0,  5, 0, 2, 44, 1, 250, 0, 9, 7,  0, 0, 33, 2, 2, 0};

std::string textOf(std::uint8_t shape, std::size_t most) {
    static constexpr std::array<std::string_view, 8> units{"a", "-", "01-", "é", "ß", "字", " ", "\x7f"};
    std::string text;
    const std::size_t length = std::min<std::size_t>(most, shape % 7 * (shape / 8U));
    for (std::size_t i = 0; i < length; ++i)
        text += units[(shape + i / 3) % units.size()];
    return text;
}

jet::Value valueOf(const jet::Column& column, std::uint8_t shape) {
    if (column.type != ColumnType::Boolean && shape % 11 == 0) return jet::Null{};
    switch (column.type) {
    case ColumnType::Boolean:
        return shape % 2 == 0;
    case ColumnType::Byte:
        return shape;
    case ColumnType::Integer:
        return static_cast<std::int16_t>(shape * 257 - 30000);
    case ColumnType::Long:
        return static_cast<std::int32_t>(shape * 7919 - 900000);
    case ColumnType::Currency:
        return jet::Currency{shape * 1000003 - 100000000};
    case ColumnType::Single:
        return static_cast<float>(shape) - 100.5F;
    case ColumnType::Double:
        return shape - 100.25;
    case ColumnType::DateTime:
        return jet::DateTime{shape * 300.5 - 9000};
    case ColumnType::Text:
        return textOf(shape, static_cast<std::size_t>(column.size) + (shape == 255 ? 1 : 0));
    case ColumnType::Memo:
        return textOf(static_cast<std::uint8_t>(shape | 1), 20000) +
               std::string(shape > 200 ? shape * 60U : 0U, 'm');
    case ColumnType::Ole:
        return jet::Bytes(shape * std::size_t{40}, shape);
    case ColumnType::Binary:
    case ColumnType::FixedBinary:
        return jet::Bytes(std::min<std::size_t>(shape, static_cast<std::size_t>(column.size)), shape);
    case ColumnType::Guid:
        return jet::Guid{{shape, 1, 2, shape}};
    case ColumnType::Numeric: {
        jet::Numeric numeric;
        numeric.negative = shape % 2 == 0;
        numeric.magnitude[15] = shape;
        return numeric;
    }
    }
    return jet::Null{};
}

class Changer {
  public:
    Changer(jet::Database& db, Script& script) : m_db(db), m_script(script) {}

    /// Every call does one change, which the engine may refuse.
    void step() {
        const std::uint8_t what = m_script.next();
        const std::uint8_t detail = m_script.next();
        (void)fuzz::tolerant([&] { change(what, detail); });
    }

  private:
    void change(std::uint8_t what, std::uint8_t detail) {
        if (what % 8 == 5) return create(detail);
        const std::vector<std::string> names = m_db.tableNames();
        if (names.empty()) return;
        const std::string& name = names[(what / 8U) % names.size()];
        jet::Table table = m_db.table(name);
        switch (what % 8) {
        case 1:
            return onRow(table, detail, [&](jet::RowId id) { table.update(id, row(table)); });
        case 2:
            return onRow(table, detail, [&](jet::RowId id) { table.erase(id); });
        case 3:
            return thin(table, detail);
        case 4:
            return m_db.addColumn(name, column(detail, table.columns().size()));
        case 6:
            if (detail == 0) table.clear();
            return;
        case 7:
            for (int i = 0; i < detail; ++i)
                table.insert(row(table, static_cast<std::uint8_t>(i * 37)));
            return;
        default:
            table.insert(row(table));
        }
    }

    jet::Row row(const jet::Table& table, std::uint8_t salt = 0) {
        jet::Row result;
        for (const jet::Column& column : table.columns())
            result.push_back(valueOf(column, static_cast<std::uint8_t>(m_script.next() + salt)));
        return result;
    }

    static jet::ColumnDesign column(std::uint8_t shape, std::size_t number) {
        static constexpr std::array<ColumnType, 14> types{
            ColumnType::Text,    ColumnType::Long,    ColumnType::Memo,     ColumnType::Boolean,
            ColumnType::Byte,    ColumnType::Single,  ColumnType::Currency, ColumnType::Double,
            ColumnType::Ole,     ColumnType::Numeric, ColumnType::Guid,     ColumnType::Binary,
            ColumnType::Integer, ColumnType::DateTime};
        jet::ColumnDesign design;
        design.name = "F" + std::to_string(number);
        design.type = types[shape % types.size()];
        if (design.type == ColumnType::Text || design.type == ColumnType::Binary) design.size = 1 + shape;
        return design;
    }

    void create(std::uint8_t shape) {
        jet::TableDesign design{.name = "New" + std::to_string(shape)};
        for (unsigned i = 0; i < 1U + shape % 9U; ++i)
            design.columns.push_back(column(static_cast<std::uint8_t>(shape + i), i));
        if (shape % 3 != 0) {
            jet::IndexDesign index{.name = "I"};
            for (unsigned i = 0; i < 1U + shape % 3U && i < design.columns.size(); ++i)
                index.columns.push_back({design.columns[i].name, (shape + i) % 2 == 0});
            index.kind = shape % 2 == 0 ? jet::IndexKind::Plain : jet::IndexKind::Unique;
            index.ignoreNulls = shape % 5 == 0;
            design.indexes.push_back(std::move(index));
        }
        m_db.createTable(design);
    }

    template <typename Action>
    static void onRow(const jet::Table& table, std::uint8_t number, Action action) {
        jet::Cursor cursor = table.scan();
        for (int i = 0; cursor.next(); ++i)
            if (i == number % 60) return action(cursor.id());
    }

    static void thin(jet::Table& table, std::uint8_t every) {
        int i = 0;
        for (jet::Cursor cursor = table.scan(); cursor.next(); ++i)
            if (i % (1 + every % 8) == 0) table.erase(cursor.id());
    }

    jet::Database& m_db;
    Script& m_script;
};

void fail(const char* what, const std::string& detail) {
    std::fprintf(stderr, "%s %s\n", what, detail.c_str());
    std::abort();
}

/// The rows of the user tables that can be read.
fuzz::Content contentOf(const jet::Database& db) {
    fuzz::Content content;
    for (const std::string& name : db.tableNames())
        (void)fuzz::tolerant([&] { content[name] = fuzz::rowsOf(db.table(name)); });
    return content;
}

/// The first row that is in one of them only, or differs.
std::string difference(const fuzz::Content::mapped_type& wanted, const fuzz::Content::mapped_type& got) {
    for (const auto* side : {&wanted, &got})
        for (const auto& [id, row] : *side) {
            const auto other = side == &wanted ? got.find(id) : wanted.find(id);
            const bool there = other != (side == &wanted ? got : wanted).end();
            if (there && other->second == row) continue;
            return " page " + std::to_string(id.page) + " row " + std::to_string(id.slot) +
                   (side == &wanted ? ", in memory: " : ", in the file: ") + row +
                   (there ? "\nand there: " + other->second : ", missing there");
        }
    return {};
}

} // namespace

// Whatever is changed in whatever file: a commit either fails, or what it wrote opens and reads as it stood
// in memory. A file without a fault has none afterwards.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    const std::size_t file = fuzz::fileBytes(input);
    const jet::MemoryDisk disk(jet::Bytes(data, data + file));
    std::optional<jet::Database> db = fuzz::open(disk, jet::OpenMode::ReadWrite);
    if (!db) return 0;
    const bool sound = jet::check(*db).empty();
    Script script(file < size ? input.subspan(file) : std::span<const std::uint8_t>(usualScript));
    Changer changer(*db, script);
    for (int i = 0; i < 60 && script.more(); ++i)
        changer.step();
    const fuzz::Content expected = contentOf(*db);
    const jet::Bytes old = disk.content();
    try {
        db->commit();
    } catch (const jet::Error& refusal) {
        if (disk.content() != old) fail("a failed commit left traces:", refusal.what());
        if (sound) fail("a sound file could not be written:", refusal.what());
        return 0;
    }
    db = fuzz::open(disk, jet::OpenMode::ReadOnly);
    if (!db) fail("a written file does not open", "");
    const fuzz::Content found = contentOf(*db);
    for (const auto& [name, rows] : expected) {
        const auto there = found.find(name);
        if (there == found.end()) fail("a written table is lost:", name);
        if (there->second != rows)
            fail("a written table reads otherwise:", name + difference(rows, there->second));
    }
    const std::vector<std::string> faults = jet::check(*db);
    if (sound && !faults.empty()) fail("a sound file is no more:", faults.front());
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                               unsigned seed) {
    return fuzz::mutate(data, size, most, seed);
}
