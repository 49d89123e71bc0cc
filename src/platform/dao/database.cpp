#include "connection.h"
#include "recordset_state.h"
#include "statement.h"

#include "basic/files.h"
#include "basic/strings.h"

#include "jet/column_words.h"

namespace dao {

struct Database::State {
    std::shared_ptr<Connection> connection;
};

Database::Database(std::unique_ptr<State> state) : m_state(std::move(state)) {}
Database::~Database() {
    // What recordsets still share is of no use to them any more.
    if (m_state) m_state->connection->database.reset();
}
Database::Database(Database&&) noexcept = default;
Database& Database::operator=(Database&& other) noexcept {
    if (m_state && this != &other) m_state->connection->database.reset();
    m_state = std::move(other.m_state);
    return *this;
}

namespace {

/// The password in ";pwd=..."; other parts of the connect string mean nothing to a database file.
std::string_view passwordIn(std::string_view connect) {
    while (!connect.empty()) {
        const std::string_view part = connect.substr(0, connect.find(';'));
        connect.remove_prefix(std::min(part.size() + 1, connect.size()));
        const std::size_t equals = part.find('=');
        if (equals != std::string_view::npos && basic::sameText(basic::trim(part.substr(0, equals)), "pwd"))
            return part.substr(equals + 1);
    }
    return {};
}

/// For reading when the file may not be written: Close then refuses changes.
jet::Database openFile(const std::string& path, std::string_view password) {
    try {
        return jet::Database::open(path, password, jet::OpenMode::ReadWrite);
    } catch (const jet::Error& error) {
        if (error.kind() != jet::ErrorKind::ReadOnly && error.kind() != jet::ErrorKind::PermissionDenied)
            throw;
        return jet::Database::open(path, password, jet::OpenMode::ReadOnly);
    }
}

jet::ColumnDesign designOf(const Statement::Column& column) {
    auto design = jet::columnTypeOf(column.type);
    if (!design) raise(EngineError::FieldDefinition);
    design->name = column.name;
    return *design;
}

} // namespace

Database OpenDatabase(std::string_view path, std::string_view connect) {
    return translated(path, [&] {
        auto connection = std::make_shared<Connection>();
        connection->path = path;
        connection->database = openFile(basic::nativePath(path), passwordIn(connect));
        return Database(std::make_unique<Database::State>(std::move(connection)));
    });
}

void Database::Execute(std::string_view text) {
    jet::Database& database = m_state->connection->open();
    const Statement statement = parseStatement(text);
    if (statement.kind == Statement::Kind::DeleteAll) {
        if (!database.hasTable(statement.table)) raise(EngineError::NoSuchTable, statement.table);
        translated(statement.table, m_state->connection->path,
                   [&] { database.table(statement.table).clear(); });
    } else if (statement.kind == Statement::Kind::AddColumn) {
        const jet::ColumnDesign column = designOf(statement.columns.front());
        if (!database.hasTable(statement.table)) raise(EngineError::NoTableOrConstraint);
        translated(column.name, m_state->connection->path,
                   [&] { database.addColumn(statement.table, column); });
    } else {
        jet::TableDesign design{statement.table};
        for (const Statement::Column& column : statement.columns) {
            design.columns.push_back(designOf(column));
            if (column.primaryKey)
                design.indexes.push_back({"PrimaryKey", {{column.name}}, jet::IndexKind::PrimaryKey});
        }
        translated(statement.table, m_state->connection->path, [&] { database.createTable(design); });
    }
    ++m_state->connection->changes;
}

Recordset Database::OpenRecordset(std::string_view table) {
    jet::Database& database = m_state->connection->open();
    if (!database.hasTable(table)) raise(EngineError::NoSuchTable, table);
    return translated(table, m_state->connection->path, [&] {
        return Recordset(std::make_unique<Recordset::State>(m_state->connection, database.table(table)));
    });
}

std::vector<std::string> Database::TableNames() const {
    return m_state->connection->open().tableNames();
}

void Database::Close() {
    Connection& connection = *m_state->connection;
    jet::Database& database = connection.open();
    translated(connection.path, [&] {
        if (database.changed()) database.commit();
    });
    connection.database.reset();
}

} // namespace dao
