#include "catalog.h"

#include "pager.h"
#include "sort_key.h"
#include "text.h"

#include <algorithm>
#include <array>

namespace jet {

namespace {

template <typename T>
T valueOr(const Value& value, T otherwise) {
    const T* found = std::get_if<T>(&value);
    return found != nullptr ? *found : otherwise;
}

/// What tells one object from another; without them no name means anything.
constexpr std::array<std::pair<std::string_view, ColumnType>, 4> essentialColumns{
    {{"Id", ColumnType::Long},
     {"Name", ColumnType::Text},
     {"Type", ColumnType::Integer},
     {"Flags", ColumnType::Long}}};

std::size_t columnNamed(const std::vector<Column>& columns, std::string_view name) {
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (sameName(columns[i].name, name)) return i;
    throw Error::corrupt(catalogPage, 0, "a system table lacks the column " + std::string(name));
}

} // namespace

NamedRow::NamedRow(const std::vector<Column>& columns) : m_columns(columns), m_row(columns.size()) {
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].type == ColumnType::Boolean) m_row[i] = false;
}

NamedRow& NamedRow::set(std::string_view name, Value value) {
    m_row[columnNamed(m_columns, name)] = std::move(value);
    return *this;
}

Catalog::Catalog(Pager& pager) : m_store(std::make_shared<TableStore>(pager, "MSysObjects", catalogPage)) {
    for (const auto& [name, type] : essentialColumns)
        if (m_store->columns()[column(name)].type != type)
            throw Error::corrupt(catalogPage, 0,
                                 "the catalog's column " + std::string(name) + " has another type");
    read();
}

std::size_t Catalog::column(std::string_view name) const {
    return columnNamed(m_store->columns(), name);
}

void Catalog::read() {
    const std::size_t id = column("Id");
    const std::size_t name = column("Name");
    const std::size_t type = column("Type");
    const std::size_t flags = column("Flags");
    const std::size_t parent = column("ParentId");
    const Layout& layout = m_store->pager().layout();
    m_objects.clear();
    for (Cursor cursor(*m_store); cursor.next();) {
        const StoredRow row(m_store->rowView(cursor.id()), layout, m_store->def());
        const auto value = [&](std::size_t i) {
            Value result;
            decodeColumn(m_store->pager(), m_store->def().columns[i], row, result);
            return result;
        };
        Object object;
        object.id = valueOr<std::int32_t>(value(id), 0);
        object.name = valueOr<std::string>(value(name), {});
        object.type = valueOr<std::int16_t>(value(type), 0);
        object.flags = static_cast<std::uint32_t>(valueOr<std::int32_t>(value(flags), 0));
        object.parent = valueOr<std::int32_t>(value(parent), 0);
        object.row = cursor.id();
        m_objects.push_back(std::move(object));
    }
}

const Catalog::Object* Catalog::table(std::string_view name) const {
    for (const Object& object : m_objects)
        if (object.isTable() && sameName(object.name, name)) return &object;
    return nullptr;
}

bool Catalog::isTaken(const std::string& name) const {
    const auto keyOf = [this](const std::string& text) {
        Bytes key;
        appendKey(key, {ColumnType::Text, true}, text, m_store->pager().format());
        return key;
    };
    const Bytes wanted = keyOf(name);
    return std::ranges::any_of(m_objects, [&](const Object& object) {
        return (object.isTable() || object.parent == tablesContainer) && keyOf(object.name) == wanted;
    });
}

Bytes Catalog::properties(const Object& object) {
    Row row;
    m_store->read(object.row, row);
    return valueOr<Bytes>(row[column("LvProp")], {});
}

/// The account that owns what users make, as this file masks it.
Bytes Catalog::adminAccount() {
    Row row;
    for (const Object& object : m_objects) {
        if (object.id != databaseObject) continue;
        m_store->read(object.row, row);
        Bytes owner = valueOr<Bytes>(row[column("Owner")], {});
        if (!owner.empty()) return owner;
    }
    return {0x03, 0x01};
}

void Catalog::add(const std::string& name, std::uint32_t page, const Bytes& properties, DateTime now,
                  TableStore& permissions) {
    constexpr std::int32_t everything = 0x000FFFFF;
    const auto id = static_cast<std::int32_t>(page);
    const Bytes admin = adminAccount();
    NamedRow row(m_store->columns());
    row.set("Id", id).set("ParentId", tablesContainer).set("Name", name).set("Type", tableObject);
    row.set("DateCreate", now).set("DateUpdate", now).set("Owner", admin).set("Flags", std::int32_t{0});
    if (!properties.empty()) row.set("LvProp", properties);
    const RowId at = m_store->insert(row.row());
    Bytes users = admin;
    users.front() = static_cast<std::uint8_t>(users.front() ^ 1);
    for (const Bytes& account : {admin, users}) {
        NamedRow permission(permissions.columns());
        permission.set("ObjectId", id).set("SID", account).set("ACM", everything).set("FInheritable", false);
        permissions.insert(permission.row());
    }
    m_objects.push_back({id, name, tableObject, 0, tablesContainer, at});
}

void Catalog::touch(const Object& object, const Bytes& properties, DateTime now) {
    Row row;
    m_store->read(object.row, row);
    if (!properties.empty()) row[column("LvProp")] = properties;
    row[column("DateUpdate")] = now;
    m_store->update(object.row, row);
}

} // namespace jet
