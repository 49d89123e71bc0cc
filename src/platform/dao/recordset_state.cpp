#include "recordset_state.h"

#include "conversion.h"

#include "basic/strings.h"

#include <algorithm>

namespace dao {

namespace {

/// Equal as a key would be, as far as that can be told without knowing the order: letters in any case.
bool sameKey(const jet::Value& stored, const jet::Value& wanted) {
    const auto* text = std::get_if<std::string>(&stored);
    const auto* other = std::get_if<std::string>(&wanted);
    if (text != nullptr && other != nullptr) return basic::sameText(basic::trim(*text), basic::trim(*other));
    return stored == wanted;
}

} // namespace

void Recordset::State::mustBeOpen() const {
    if (closed || !connection->database) raise(EngineError::ObjectClosed);
}

jet::RowId Recordset::State::mustStand() const {
    if (!current) raise(EngineError::NoCurrentRecord);
    if (deleted || !table.exists(*current)) raise(EngineError::RecordDeleted);
    return *current;
}

const jet::Row& Recordset::State::currentRow() {
    if (rowLoaded && !deleted && loadedAt == table.changes()) return row;
    if (!rowLoaded) {
        if (!index && !deleted && current == cursor.id() && cursor.isFresh())
            cursor.read(row);
        else
            table.read(mustStand(), row);
        rowLoaded = true;
    } else {
        static_cast<void>(mustStand());
    }
    loadedAt = table.changes();
    return row;
}

const jet::Value& Recordset::State::stored(std::size_t field) {
    mustBeOpen();
    if (buffer != Buffer::None) return edited.at(field);
    if (!rowLoaded || deleted || loadedAt != table.changes())
        translated(table.columns().at(field).name, connection->path, [this] { (void)currentRow(); });
    return row.at(field);
}

jet::Value& Recordset::State::toBeEdited(std::size_t field) {
    mustBeOpen();
    if (buffer == Buffer::None) raise(EngineError::UpdateWithoutEdit);
    return edited.at(field);
}

void Recordset::State::standOn(std::optional<jet::RowId> id) {
    current = id;
    atEnd = !id;
    deleted = false;
    rowLoaded = false;
    buffer = Buffer::None;
}

void Recordset::State::takeOrder() {
    if (orderedAt == connection->changes) return;
    order = table.seekAll(*index, {});
    orderedAt = connection->changes;
    const auto found = current ? std::ranges::find(order, *current) : order.end();
    if (found != order.end()) place = static_cast<std::size_t>(found - order.begin());
}

/// To the first record at or behind `place` that is still there.
void Recordset::State::stepInOrder() {
    while (place < order.size() && !table.exists(order[place]))
        ++place;
    standOn(place < order.size() ? std::optional(order[place]) : std::nullopt);
}

void Recordset::State::toFirst() {
    passed = 0;
    total = std::max<std::int64_t>(1, table.rowCount());
    if (index) {
        takeOrder();
        place = 0;
        stepInOrder();
    } else {
        cursor = table.scan();
        standOn(cursor.next() ? std::optional(cursor.id()) : std::nullopt);
    }
}

void Recordset::State::toNext() {
    ++passed;
    if (index) {
        takeOrder();
        if (place < order.size() && order[place] == current) ++place;
        stepInOrder();
    } else {
        standOn(cursor.next() ? std::optional(cursor.id()) : std::nullopt);
    }
}

void Recordset::State::requireAllowed() {
    const jet::Row* stored = buffer == Buffer::Edit ? &currentRow() : nullptr;
    const auto& columns = table.columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const jet::Value& value = edited[i];
        const auto* text = std::get_if<std::string>(&value);
        const bool lacking = columns[i].required && !columns[i].autonumber && jet::isNull(value);
        const bool empty = !columns[i].allowZeroLength && text != nullptr && text->empty();
        if ((!lacking && !empty) || (stored != nullptr && stored->at(i) == value)) continue;
        raise(lacking ? EngineError::ValueRequired : EngineError::ZeroLengthText,
              table.name() + "." + columns[i].name);
    }
}

std::optional<jet::RowId> Recordset::State::find(const std::vector<Value>& keys) {
    const jet::IndexInfo& info = table.indexes().at(static_cast<std::size_t>(*index));
    if (keys.empty() || keys.size() > info.columns.size()) raise(EngineError::DataTypeConversion);
    wanted.resize(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const auto& column = table.columns().at(static_cast<std::size_t>(info.columns[i].column));
        const auto* text = std::get_if<std::string>(&keys[i]);
        if (text != nullptr && column.type == jet::ColumnType::Text)
            wanted[i] = *text;
        else
            wanted[i] = toColumn(keys[i], column, LengthCheck::No);
    }
    if (info.seekable) return table.seek(*index, wanted);
    for (jet::Cursor rows = table.scan(); rows.next();) {
        bool same = true;
        for (std::size_t i = 0; same && i < wanted.size(); ++i)
            same = sameKey(rows.row().at(static_cast<std::size_t>(info.columns[i].column)), wanted[i]);
        if (same) return rows.id();
    }
    return std::nullopt;
}

} // namespace dao
