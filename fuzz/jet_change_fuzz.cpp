#include "jet/check.h"
#include "jet/database.h"
#include "jet/error.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

/// Rows whose values follow from a few bytes of the input.
class Values {
  public:
    explicit Values(std::uint32_t seed) : m_state(seed | 1) {}

    std::uint32_t next() {
        m_state ^= m_state << 13;
        m_state ^= m_state >> 17;
        m_state ^= m_state << 5;
        return m_state;
    }

    jet::Row row(const jet::Table& table) {
        jet::Row row;
        for (const jet::Column& column : table.columns())
            row.push_back(value(column));
        return row;
    }

  private:
    jet::Value value(const jet::Column& column) {
        const std::uint32_t bits = next();
        if (column.type == jet::ColumnType::Boolean) return (bits & 1) != 0;
        if (bits % 8 == 0) return jet::Null{};
        const std::size_t length = bits % 64 == 1 ? 9000 : bits % 40;
        switch (column.type) {
        case jet::ColumnType::Byte:
            return static_cast<std::uint8_t>(bits);
        case jet::ColumnType::Integer:
            return static_cast<std::int16_t>(bits);
        case jet::ColumnType::Long:
            return static_cast<std::int32_t>(bits);
        case jet::ColumnType::Currency:
            return jet::Currency{bits};
        case jet::ColumnType::Single:
            return static_cast<float>(bits);
        case jet::ColumnType::Double:
            return static_cast<double>(bits) / 7;
        case jet::ColumnType::DateTime:
            return jet::DateTime{static_cast<double>(bits % 90000)};
        case jet::ColumnType::Text:
        case jet::ColumnType::Memo:
            return std::string(length, static_cast<char>('!' + bits % 90));
        case jet::ColumnType::Binary:
        case jet::ColumnType::FixedBinary:
        case jet::ColumnType::Ole:
            return jet::Bytes(length, static_cast<std::uint8_t>(bits));
        case jet::ColumnType::Guid:
            return jet::Guid{{static_cast<std::uint8_t>(bits)}};
        default:
            return jet::Numeric{};
        }
    }

    std::uint32_t m_state;
};

/// What a change is refused with must be a jet::Error.
template <typename Change>
void attempt(Change change) {
    try {
        change();
    } catch (const jet::Error&) {
    }
}

void changeTable(jet::Database& database, const std::string& name, Values& values) {
    jet::Table table = database.table(name);
    std::vector<jet::RowId> rows;
    attempt([&] {
        for (jet::Cursor cursor = table.scan(); rows.size() < 64 && cursor.next();)
            rows.push_back(cursor.id());
    });
    for (int i = 0; i < 24; ++i) {
        const std::uint32_t what = values.next();
        attempt([&] {
            if (what % 2 == 0 || rows.empty())
                rows.push_back(table.insert(values.row(table)));
            else if (what % 3 == 0)
                table.erase(rows[what / 8 % rows.size()]);
            else
                table.update(rows[what / 8 % rows.size()], values.row(table));
        });
    }
    attempt([&] {
        if (values.next() % 4 == 0)
            database.addColumn(name,
                               jet::ColumnDesign{.name = "Added", .type = jet::ColumnType::Text, .size = 9});
        if (values.next() % 8 == 0) table.clear();
    });
}

bool sound(jet::Database& database) {
    return jet::check(database, jet::CheckLevel::Normal).empty();
}

} // namespace

// Changes to any bytes that open end well or with a jet::Error, and a sound database stays sound.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > std::size_t{1} << 20) return 0;
    Values values(size > 2048 ? data[2047] + 256U * data[size / 2] : 1);
    attempt([&] {
        auto file = std::make_unique<jet::MemoryFile>(jet::Bytes(data, data + size));
        jet::Database database = jet::Database::open(std::move(file), "password");
        const bool wasSound = sound(database);
        for (const std::string& name : database.tableNames())
            attempt([&] { changeTable(database, name, values); });
        attempt([&] {
            jet::TableDesign design{"Fresh", {{.name = "Id", .type = jet::ColumnType::Long}}, {}};
            static_cast<void>(database.createTable(design));
        });
        if (wasSound && !sound(database)) std::abort();
        database.commit();
    });
    return 0;
}
