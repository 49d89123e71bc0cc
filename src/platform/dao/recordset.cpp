#include "recordset_state.h"

#include "conversion.h"

#include "basic/strings.h"

#include <algorithm>

namespace dao {

const std::string& Field::Name() const {
    return m_owner->m_state->table.columns().at(static_cast<std::size_t>(m_number)).name;
}

DataType Field::Type() const {
    const auto type = m_owner->m_state->table.columns().at(static_cast<std::size_t>(m_number)).type;
    return type == jet::ColumnType::FixedBinary ? DataType::Binary : static_cast<DataType>(type);
}

int Field::Size() const {
    return m_owner->m_state->table.columns().at(static_cast<std::size_t>(m_number)).size;
}

bool Field::Required() const {
    return m_owner->m_state->table.columns().at(static_cast<std::size_t>(m_number)).required;
}

bool Field::AllowZeroLength() const {
    return m_owner->m_state->table.columns().at(static_cast<std::size_t>(m_number)).allowZeroLength;
}

Value Field::value() const {
    Recordset::State& state = *m_owner->m_state;
    const auto at = static_cast<std::size_t>(m_number);
    return fromColumn(state.stored(at), state.table.columns().at(at));
}

bool Field::isNull() const {
    return jet::isNull(m_owner->m_state->stored(static_cast<std::size_t>(m_number)));
}

std::string Field::text() const {
    const jet::Value& stored = m_owner->m_state->stored(static_cast<std::size_t>(m_number));
    if (const auto* text = std::get_if<std::string>(&stored)) return *text;
    return jet::isNull(stored) ? std::string() : toText(value());
}

void Field::setValue(const Value& value) {
    Recordset::State& state = *m_owner->m_state;
    const auto at = static_cast<std::size_t>(m_number);
    state.toBeEdited(at) = toColumn(value, state.table.columns().at(at));
}

void Field::setValue(std::string_view text) {
    Recordset::State& state = *m_owner->m_state;
    const auto at = static_cast<std::size_t>(m_number);
    jet::Value& into = state.toBeEdited(at);
    const jet::Column& column = state.table.columns()[at];
    // No character takes less than a byte, so most texts need no counting and no conversion.
    if (column.type != jet::ColumnType::Text || static_cast<int>(text.size()) > column.size)
        into = toColumn(Value(std::string(text)), column);
    else if (auto* known = std::get_if<std::string>(&into))
        known->assign(text);
    else
        into.emplace<std::string>(text);
}

void Field::setValue(double number) {
    setValue(Value(number));
}

Recordset::Recordset(std::unique_ptr<State> state) : m_state(std::move(state)) {
    m_state->toFirst();
}
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;

void Recordset::AddNew() {
    m_state->mustBeOpen();
    const auto& columns = m_state->table.columns();
    jet::Row& row = m_state->edited;
    row.resize(columns.size());
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (columns[i].type == jet::ColumnType::Boolean)
            row[i] = false;
        else
            row[i] = jet::Null{};
    }
    m_state->buffer = State::Buffer::Add;
}

void Recordset::Edit() {
    m_state->mustBeOpen();
    translated(m_state->table.name(), m_state->connection->path,
               [&] { m_state->edited = m_state->currentRow(); });
    m_state->buffer = State::Buffer::Edit;
}

void Recordset::Update() {
    m_state->mustBeOpen();
    if (m_state->buffer == State::Buffer::None) raise(EngineError::UpdateWithoutEdit);
    translated(m_state->table.name(), m_state->connection->path, [&] {
        m_state->requireAllowed();
        if (m_state->buffer == State::Buffer::Add) {
            static_cast<void>(m_state->table.insert(m_state->edited));
        } else {
            m_state->table.update(m_state->mustStand(), m_state->edited);
            m_state->rowLoaded = false;
        }
    });
    ++m_state->connection->changes;
    m_state->buffer = State::Buffer::None;
}

void Recordset::Delete() {
    m_state->mustBeOpen();
    translated(m_state->table.name(), m_state->connection->path,
               [&] { m_state->table.erase(m_state->mustStand()); });
    m_state->deleted = true;
    m_state->rowLoaded = false;
    m_state->buffer = State::Buffer::None;
}

void Recordset::MoveFirst() {
    m_state->mustBeOpen();
    translated(m_state->table.name(), m_state->connection->path, [&] { m_state->toFirst(); });
    if (!m_state->current) raise(EngineError::NoCurrentRecord);
}

void Recordset::MoveNext() {
    m_state->mustBeOpen();
    if (!m_state->current) raise(EngineError::NoCurrentRecord);
    translated(m_state->table.name(), m_state->connection->path, [&] { m_state->toNext(); });
}

bool Recordset::BOF() const {
    m_state->mustBeOpen();
    return m_state->atEnd && m_state->passed == 0;
}

bool Recordset::EOF_() const {
    m_state->mustBeOpen();
    return m_state->atEnd;
}

std::int32_t Recordset::RecordCount() const {
    m_state->mustBeOpen();
    return static_cast<std::int32_t>(m_state->table.rowCount());
}

std::int32_t Recordset::RecordsThere() const {
    m_state->mustBeOpen();
    return translated(m_state->table.name(), m_state->connection->path,
                      [&] { return static_cast<std::int32_t>(m_state->table.countRows()); });
}

float Recordset::PercentPosition() const {
    m_state->mustBeOpen();
    if (m_state->atEnd) return 100;
    return std::min(100.0F,
                    100.0F * static_cast<float>(m_state->passed) / static_cast<float>(m_state->total));
}

int Recordset::FieldCount() const {
    m_state->mustBeOpen();
    return static_cast<int>(m_state->table.columns().size());
}

Field Recordset::Fields(int number) {
    if (number < 0 || number >= FieldCount()) raise(EngineError::NotInCollection);
    return {*this, number};
}

Field Recordset::Fields(std::string_view name) {
    m_state->mustBeOpen();
    const auto& columns = m_state->table.columns();
    std::size_t& last = m_state->lastField;
    if (++last >= columns.size()) last = 0;
    if (!columns.empty() && columns[last].name == name) return {*this, static_cast<int>(last)};
    const auto number = m_state->table.column(name);
    if (!number) raise(EngineError::NotInCollection);
    last = static_cast<std::size_t>(*number);
    return {*this, *number};
}

void Recordset::setIndex(std::string_view name) {
    m_state->mustBeOpen();
    const auto found = m_state->table.index(name);
    if (!found) raise(EngineError::NoSuchIndex, name);
    m_state->index = found;
    m_state->orderedAt.reset();
    translated(name, m_state->connection->path, [&] { m_state->toFirst(); });
}

void Recordset::Seek(std::string_view comparison, const std::vector<Value>& keys) {
    m_state->mustBeOpen();
    if (basic::trim(comparison) != "=") raise(EngineError::NotSupported);
    if (!m_state->index) raise(EngineError::NoIndexChosen);
    translated(m_state->table.name(), m_state->connection->path, [&] {
        const auto found = m_state->find(keys);
        m_state->noMatch = !found;
        m_state->standOn(found);
        m_state->atEnd = false;
        m_state->orderedAt.reset();
    });
}

bool Recordset::NoMatch() const {
    m_state->mustBeOpen();
    return m_state->noMatch;
}

void Recordset::Close() {
    m_state->mustBeOpen();
    m_state->closed = true;
}

} // namespace dao
