#pragma once

#include "jet/error.h"

#include <string_view>

// The engine's errors as the program meets them: numbers and English descriptions of the Data Access Objects.

namespace dao {

enum class EngineError : int {
    NoSuchIndex = 3015,
    NoIndexChosen = 3019,
    UpdateWithoutEdit = 3020,
    NoCurrentRecord = 3021,
    DuplicateKey = 3022,
    FileNotFound = 3024,
    DiskFull = 3026,
    CannotUpdate = 3027,
    NotAPassword = 3031,
    DiskError = 3043,
    PathNotFound = 3044,
    FileInUse = 3045,
    RecordTooLarge = 3047,
    DamagedDatabase = 3049,
    NoPermission = 3051,
    NullKey = 3058,
    NoSuchTable = 3078,
    StatementExpected = 3129,
    TextTooLong = 3163,
    RecordDeleted = 3167,
    ChangedUnderneath = 3197,
    NotSupported = 3251,
    NotInCollection = 3265,
    FieldDefinition = 3292,
    ValueRequired = 3314,
    ZeroLengthText = 3315,
    UnknownFormat = 3343,
    NoTableOrConstraint = 3371,
    FieldExists = 3380,
    ObjectClosed = 3420,
    DataTypeConversion = 3421,
    Cancelled = 3426,
};

/// Raises basic::RuntimeError with the number and its description; `name` stands where the description names
/// a file, table, field or index.
[[noreturn]] void raise(EngineError error, std::string_view name = {});

/// The same for an error of the storage engine. `name` is the file or object that was being worked on. What
/// the descriptions are silent about (where a file is damaged, why it cannot be changed) is added to them.
[[noreturn]] void raise(const jet::Error& error, std::string_view name);

/// Runs `action` and raises what the storage engine throws by the rule above.
template <typename Action>
auto translated(std::string_view name, Action&& action) {
    try {
        return action();
    } catch (const jet::Error& error) {
        raise(error, name);
    }
}

} // namespace dao
