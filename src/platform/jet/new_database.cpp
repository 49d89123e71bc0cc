#include "new_database.h"

#include "catalog.h"
#include "header.h"
#include "pager.h"
#include "table_maker.h"

#include <bit>
#include <initializer_list>

namespace jet {

namespace {

// Account ids, masked with the key that belongs to newFileDate.
const Bytes adminAccount{0x64, 0x8B};
const Bytes usersAccount{0x65, 0x8B};
const Bytes engineAccount{0x65, 0x89};
const Bytes creatorAccount{0x65, 0x8E};

struct SystemColumn {
    const char* name;
    ColumnType type;
};

struct SystemIndex {
    const char* name;
    std::uint32_t number;
    std::initializer_list<std::uint16_t> columns;
    std::uint8_t flags;
    IndexUse use;
};

/// Indexes stand in the order of their names; their numbers, and with them their keys, in another.
TableDef systemTableDef(std::uint32_t page, std::initializer_list<SystemColumn> columns,
                        std::initializer_list<SystemIndex> indexes) {
    TableDef def;
    def.page = page;
    def.kind = systemTable;
    for (const SystemColumn& column : columns) {
        ColumnDesign design;
        design.name = column.name;
        design.type = column.type;
        design.compressed = false;
        ColumnDef made = columnDefOf(design, Format::Jet4);
        const bool account = design.name == "SID" || design.name == "Owner";
        made.flags = static_cast<std::uint8_t>(made.flags | columnOfSystem | (account ? columnOfAccount : 0));
        def.columns.push_back(std::move(made));
    }
    def.indexData.resize(indexes.size());
    for (const SystemIndex& index : indexes) {
        IndexData& data = def.indexData[index.number];
        for (std::uint16_t column : index.columns)
            data.columns.push_back({column, true});
        data.flags = index.flags | indexAlwaysJet4;
        LogicalIndex logical;
        logical.name = index.name;
        logical.number = index.number;
        logical.data = index.number;
        logical.use = index.use;
        def.indexes.push_back(std::move(logical));
    }
    return def;
}

TableDef objectsDef() {
    using enum ColumnType;
    return systemTableDef(catalogPage,
                          {{"Id", Long},
                           {"ParentId", Long},
                           {"Name", Text},
                           {"Type", Integer},
                           {"DateCreate", DateTime},
                           {"DateUpdate", DateTime},
                           {"Owner", Binary},
                           {"Flags", Long},
                           {"Database", Memo},
                           {"Connect", Memo},
                           {"ForeignName", Text},
                           {"RmtInfoShort", Binary},
                           {"RmtInfoLong", Ole},
                           {"Lv", Ole},
                           {"LvProp", Ole},
                           {"LvModule", Ole},
                           {"LvExtra", Ole}},
                          {{"Id", 1, {0}, indexUnique, IndexUse::PrimaryKey},
                           {"ParentIdName", 0, {1, 2}, indexUnique, IndexUse::Ordinary}});
}

TableDef permissionsDef() {
    using enum ColumnType;
    return systemTableDef(catalogPage + 1,
                          {{"ObjectId", Long}, {"SID", Binary}, {"ACM", Long}, {"FInheritable", Boolean}},
                          {{"ObjectId", 0, {0}, indexRequired, IndexUse::Ordinary}});
}

TableDef queriesDef() {
    using enum ColumnType;
    return systemTableDef(catalogPage + 2,
                          {{"ObjectId", Long},
                           {"Attribute", Byte},
                           {"Order", Binary},
                           {"Name1", Text},
                           {"Name2", Text},
                           {"Expression", Memo},
                           {"Flag", Integer},
                           {"LvExtra", Long}},
                          {{"ObjectIdAttribute", 0, {0, 1, 2}, indexUnique, IndexUse::PrimaryKey}});
}

TableDef relationsDef() {
    using enum ColumnType;
    return systemTableDef(catalogPage + 3,
                          {{"szRelationship", Text},
                           {"grbit", Long},
                           {"ccolumn", Long},
                           {"icolumn", Long},
                           {"szObject", Text},
                           {"szColumn", Text},
                           {"szReferencedObject", Text},
                           {"szReferencedColumn", Text}},
                          {{"szObject", 1, {4}, indexIgnoreNulls, IndexUse::Ordinary},
                           {"szReferencedObject", 2, {6}, indexIgnoreNulls, IndexUse::Ordinary},
                           {"szRelationship", 0, {0}, indexIgnoreNulls, IndexUse::Ordinary}});
}

void addObjects(TableStore& objects) {
    constexpr std::int16_t container = 3;
    constexpr std::int16_t database = 2;
    struct ObjectRow {
        std::int32_t id;
        std::int32_t parent;
        const char* name;
        std::int16_t type;
        const Bytes& owner;
    };
    const std::initializer_list<ObjectRow> rows{
        {tablesContainer, rootContainer, "Tables", container, engineAccount},
        {databasesContainer, rootContainer, "Databases", container, engineAccount},
        {relationsContainer, rootContainer, "Relationships", container, engineAccount},
        {databaseObject, databasesContainer, "MSysDb", database, adminAccount},
        {2, tablesContainer, "MSysObjects", tableObject, engineAccount},
        {3, tablesContainer, "MSysACEs", tableObject, engineAccount},
        {4, tablesContainer, "MSysQueries", tableObject, engineAccount},
        {5, tablesContainer, "MSysRelationships", tableObject, engineAccount},
    };
    const DateTime made{std::bit_cast<double>(newFileDate)};
    for (const ObjectRow& object : rows) {
        NamedRow row(objects.columns());
        row.set("Id", object.id).set("ParentId", object.parent).set("Name", std::string(object.name));
        row.set("Type", object.type)
            .set("DateCreate", made)
            .set("DateUpdate", made)
            .set("Owner", object.owner);
        row.set("Flags", static_cast<std::int32_t>(systemObject));
        objects.insert(row.row());
    }
}

void addPermissions(TableStore& permissions) {
    struct PermissionRow {
        std::int32_t object;
        const Bytes& account;
        std::int32_t access;
        bool inheritable;
    };
    const std::initializer_list<PermissionRow> rows{
        {2, adminAccount, 0x60000, false},
        {3, adminAccount, 0x60000, false},
        {4, adminAccount, 0x60000, false},
        {5, adminAccount, 0xE0000, false},
        {tablesContainer, creatorAccount, 0xF00FE, true},
        {tablesContainer, adminAccount, 0x60001, false},
        {relationsContainer, creatorAccount, 0xF00FE, true},
        {relationsContainer, adminAccount, 0x60001, false},
        {databasesContainer, adminAccount, 0x60000, false},
        {databaseObject, adminAccount, 0x6000E, false},
        {databaseObject, usersAccount, 0xE, false},
        {4, usersAccount, 0x14, false},
        {5, usersAccount, 0x14, false},
        {2, usersAccount, 0x14, false},
        {tablesContainer, usersAccount, 0xFFEFF, true},
        {relationsContainer, usersAccount, 0xFFFFF, true},
    };
    for (const PermissionRow& permission : rows) {
        NamedRow row(permissions.columns());
        row.set("ObjectId", permission.object).set("SID", permission.account).set("ACM", permission.access);
        row.set("FInheritable", permission.inheritable);
        permissions.insert(row.row());
    }
}

} // namespace

void makeDatabase(Pager& pager, const std::string& password) {
    writeHeader(pager.edit(0), password);
    TableDef defs[]{objectsDef(), permissionsDef(), queriesDef(), relationsDef()};
    for (TableDef& def : defs)
        if (pager.allocate() != def.page) throw Error(ErrorKind::Io, "The system tables are out of place.");
    std::uint32_t mapPage = 0;
    for (TableDef& def : defs)
        makeTable(pager, def, mapPage);
    TableStore objects(pager, "MSysObjects", catalogPage);
    addObjects(objects);
    objects.flush();
    TableStore permissions(pager, "MSysACEs", catalogPage + 1);
    addPermissions(permissions);
    permissions.flush();
}

} // namespace jet
