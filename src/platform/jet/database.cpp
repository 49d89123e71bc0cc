#include "database.h"

#include "catalog.h"
#include "inside.h"
#include "new_database.h"
#include "pager.h"
#include "properties.h"
#include "table_maker.h"

#include <ctime>
#include <map>

namespace jet {

namespace {

constexpr double dayOfEpoch = 25569; ///< 1970-01-01 as days since 1899-12-30

DateTime localNow() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return {dayOfEpoch + static_cast<double>(now + local.tm_gmtoff) / 86400};
}

} // namespace

struct Database::State {
    Pager pager;
    std::unique_ptr<Catalog> catalog;
    std::map<std::uint32_t, std::shared_ptr<TableStore>> stores;
    std::function<DateTime()> clock = localNow;

    explicit State(std::unique_ptr<File> file, OpenMode mode) : pager(std::move(file), mode) {}
    explicit State(std::unique_ptr<File> file) : pager(std::move(file), Format::Jet4) {}

    void openCatalog() {
        catalog = std::make_unique<Catalog>(pager);
        stores[catalogPage] = catalog->store();
    }

    const Catalog::Object& object(std::string_view name) const {
        const Catalog::Object* found = catalog->table(name);
        if (found == nullptr)
            throw Error(ErrorKind::NotFound, "The database has no table '" + std::string(name) + "'.");
        return *found;
    }

    const std::shared_ptr<TableStore>& store(const Catalog::Object& object) {
        std::shared_ptr<TableStore>& known = stores[object.page()];
        if (!known) {
            auto fresh = std::make_shared<TableStore>(pager, object.name, object.page());
            readProperties(catalog->properties(object), pager.format(), fresh->columns());
            known = std::move(fresh);
        }
        return known;
    }

    void flush() {
        for (const auto& [page, store] : stores)
            if (store) store->flush();
        pager.flush();
    }
};

Database::Database(std::unique_ptr<State> state) : m_state(std::move(state)) {}
Database::~Database() = default;
Database::Database(Database&&) noexcept = default;
Database& Database::operator=(Database&&) noexcept = default;

Database Database::open(const std::string& path, std::string_view password, OpenMode mode) {
    return open(openFile(path, mode), password, mode);
}

Database Database::open(std::unique_ptr<File> file, std::string_view password, OpenMode mode) {
    auto state = std::make_unique<State>(std::move(file), mode);
    if (!state->pager.password().empty() && state->pager.password() != password)
        throw Error(ErrorKind::WrongPassword, "Not a valid password.");
    state->openCatalog();
    return Database(std::move(state));
}

Database Database::create(const std::string& path, const CreateOptions& options) {
    return create(newFile(path), options);
}

Database Database::create(std::unique_ptr<File> file, const CreateOptions& options) {
    auto state = std::make_unique<State>(std::move(file));
    makeDatabase(state->pager, options.password);
    state->openCatalog();
    return Database(std::move(state));
}

Format Database::format() const {
    return m_state->pager.format();
}
bool Database::encoded() const {
    return m_state->pager.encoded();
}

std::vector<std::string> Database::tableNames() const {
    std::vector<std::string> names;
    for (const Catalog::Object& object : m_state->catalog->objects())
        if (object.isUserTable()) names.push_back(object.name);
    return names;
}

std::vector<std::string> Database::allTableNames() const {
    std::vector<std::string> names;
    for (const Catalog::Object& object : m_state->catalog->objects())
        if (object.isTable()) names.push_back(object.name);
    return names;
}

bool Database::hasTable(std::string_view name) const {
    return m_state->catalog->table(name) != nullptr;
}

Table Database::table(std::string_view name) const {
    return Table(m_state->store(m_state->object(name)));
}

Table Database::createTable(const TableDesign& design) {
    m_state->pager.requireWritable();
    requireDesign(design, format());
    if (m_state->catalog->isTaken(design.name))
        throw Error(ErrorKind::AlreadyExists, "Table or query '" + design.name + "' already exists.");
    TableStore& permissions = *m_state->store(m_state->object("MSysACEs"));
    for (const TableStore* store : {&permissions, m_state->catalog->store().get()}) {
        store->requireWritable();
        store->requireKnownOrder();
    }
    ChangeGuard guard(m_state->pager);
    TableDef def = tableDefOf(design, format());
    std::uint32_t mapPage = 0;
    makeTable(m_state->pager, def, mapPage);
    m_state->catalog->add(design.name, def.page, makeProperties(design.columns, format()), m_state->clock(),
                          permissions);
    guard.done();
    return table(design.name);
}

void Database::addColumn(std::string_view tableName, const ColumnDesign& column) {
    const Catalog::Object object = m_state->object(tableName);
    const std::shared_ptr<TableStore> store = m_state->store(object);
    requireColumnDesign(column, format());
    if (Table(store).column(column.name))
        throw Error(ErrorKind::AlreadyExists,
                    "Field '" + column.name + "' already exists in table '" + object.name + "'.");
    if (store->def().maxColumns >= mostColumns)
        throw Error(ErrorKind::InvalidDesign, "Too many fields defined.");
    store->requireWritable();
    m_state->catalog->store()->requireWritable();
    ColumnDef def = columnDefOf(column, format());
    store->findPlace(def);
    ChangeGuard guard(m_state->pager);
    if (def.isLongValue()) {
        std::uint32_t mapPage = store->def().ownedPages.page;
        LongValueMaps maps;
        maps.pages = newUsageMap(m_state->pager, mapPage);
        maps.freeSpace = newUsageMap(m_state->pager, mapPage);
        store->addColumn(std::move(def), &maps);
    } else {
        store->addColumn(std::move(def), nullptr);
    }
    const Bytes properties = withColumn(m_state->catalog->properties(object), column, format());
    m_state->catalog->touch(object, properties, m_state->clock());
    readProperties(properties, format(), store->columns());
    guard.done();
}

void Database::setClock(std::function<DateTime()> clock) {
    m_state->clock = std::move(clock);
}

bool Database::changed() const {
    return m_state->pager.changed();
}

void Database::commit() {
    if (!changed()) return;
    m_state->pager.requireWritable();
    m_state->flush();
    for (const auto& [page, store] : m_state->stores)
        if (store) store->verifyTrees();
    m_state->pager.commit();
}

Pager& Inside::pager(Database& database) {
    database.m_state->flush();
    return database.m_state->pager;
}

} // namespace jet
