#pragma once

#include "connection.h"
#include "dao.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace dao {

/// Where a recordset stands: before or on a record, behind the last, or on one that was deleted.
struct Recordset::State {
    enum class Buffer { None, Add, Edit };

    State(std::shared_ptr<Connection> owner, jet::Table opened)
        : connection(std::move(owner)), table(std::move(opened)), cursor(table.scan()) {}

    std::shared_ptr<Connection> connection;
    jet::Table table;
    bool closed = false;

    jet::Cursor cursor;            ///< without an index
    std::optional<int> index;      ///< position in the table's indexes
    std::vector<jet::RowId> order; ///< with an index: its rows, as of `orderedAt`
    std::optional<std::uint64_t> orderedAt;
    std::size_t place = 0; ///< in `order`

    std::optional<jet::RowId> current;
    bool deleted = false; ///< `current` was deleted; the cursor has not moved since
    bool atEnd = false;
    bool noMatch = true;
    std::int64_t passed = 0; ///< records left behind since the first
    std::int64_t total = 1;  ///< records when the walk began

    Buffer buffer = Buffer::None;
    jet::Row edited; ///< the copy buffer
    jet::Row wanted; ///< the keys that were sought last
    jet::Row row;    ///< the current record, once it was asked for
    bool rowLoaded = false;
    std::uint64_t loadedAt = 0; ///< changes of the table when the record was last seen to live
    std::size_t lastField = 0;  ///< that was asked for by name; fields are mostly asked for in their order

    /// 3420 when the recordset or its database is closed.
    void mustBeOpen() const;
    /// The record that is current and lives; 3021, 3167.
    [[nodiscard]] jet::RowId mustStand() const;
    [[nodiscard]] const jet::Row& currentRow();
    /// A field of the current record, or of the copy buffer when there is one.
    [[nodiscard]] const jet::Value& stored(std::size_t field);
    /// A field of the copy buffer; 3020 without one.
    [[nodiscard]] jet::Value& toBeEdited(std::size_t field);

    void toFirst();
    void toNext();
    void standOn(std::optional<jet::RowId> id);
    /// 3314, 3315 for what the copy buffer would bring into a field that does not take it.
    void requireAllowed();
    [[nodiscard]] std::optional<jet::RowId> find(const std::vector<Value>& keys);

  private:
    void takeOrder();
    void stepInOrder();
};

} // namespace dao
