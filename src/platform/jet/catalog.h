#pragma once

#include "table_store.h"

#include <memory>

namespace jet {

/// Ids of the objects that every database has.
constexpr std::int32_t tablesContainer = 0x0F000001;
constexpr std::int32_t databasesContainer = 0x0F000002;
constexpr std::int32_t relationsContainer = 0x0F000003;
constexpr std::int32_t rootContainer = 0x0F000000;
constexpr std::int32_t databaseObject = 0x10000000; ///< MSysDb

constexpr std::int16_t tableObject = 1;
constexpr std::uint32_t systemObject = 0x80000000;
constexpr std::uint32_t hiddenSystemObject = 2;

/// MSysObjects: what the database holds, and where. The other system table that a new object needs, MSysACEs,
/// is written too.
class Catalog {
  public:
    struct Object {
        std::int32_t id = 0; ///< of a table: the page of its definition
        std::string name;
        std::int16_t type = 0;
        std::uint32_t flags = 0;
        std::int32_t parent = 0;
        RowId row;

        [[nodiscard]] bool isTable() const { return type == tableObject; }
        /// The catalog itself is none, whatever a damaged entry says of it.
        [[nodiscard]] bool isUserTable() const {
            return isTable() && (flags & (systemObject | hiddenSystemObject)) == 0 && page() != catalogPage;
        }
        [[nodiscard]] std::uint32_t page() const { return static_cast<std::uint32_t>(id) & 0xFFFFFF; }
    };

    explicit Catalog(Pager& pager); ///< reads it; Corrupt

    [[nodiscard]] const std::vector<Object>& objects() const { return m_objects; }
    [[nodiscard]] const Object* table(std::string_view name) const; ///< any letter case; null = none
    /// A new table of that name would meet another table, or a query, with the same key in the catalog's
    /// index.
    [[nodiscard]] bool isTaken(const std::string& name) const;
    [[nodiscard]] const std::shared_ptr<TableStore>& store() const { return m_store; }

    /// The stored properties of an object; empty when it has none.
    [[nodiscard]] Bytes properties(const Object& object);
    /// Enters a new user table.
    void add(const std::string& name, std::uint32_t page, const Bytes& properties, DateTime now,
             TableStore& permissions);
    /// It was changed now, and has these properties.
    void touch(const Object& object, const Bytes& properties, DateTime now);

  private:
    [[nodiscard]] std::size_t column(std::string_view name) const;
    void read();
    [[nodiscard]] Bytes adminAccount();

    std::shared_ptr<TableStore> m_store;
    std::vector<Object> m_objects;
};

/// A row of Null, and false for the Booleans, to be filled by the columns' names.
class NamedRow {
  public:
    explicit NamedRow(const std::vector<Column>& columns);
    /// Sets a column; Corrupt when a system table lacks it.
    NamedRow& set(std::string_view name, Value value);
    [[nodiscard]] const Row& row() const { return m_row; }

  private:
    const std::vector<Column>& m_columns;
    Row m_row;
};

} // namespace jet
