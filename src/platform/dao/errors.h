#pragma once

#include <string_view>

// The engine's errors as the program meets them: numbers and English descriptions of the Data Access Objects.

namespace dao {

enum class EngineError : int {
    NoSuchIndex = 3015,
    UpdateWithoutEdit = 3020,
    NoCurrentRecord = 3021,
    DuplicateKey = 3022,
    FileNotFound = 3024,
    DiskFull = 3026,
    CannotUpdate = 3027,
    NotAPassword = 3031,
    PathNotFound = 3044,
    FileInUse = 3045,
    TableExclusive = 3008,
    DiskError = 3043,
    DatabaseCorrupt = 3049,
    NoPermission = 3051,
    NullKey = 3058,
    NoSuchTable = 3078,
    StatementExpected = 3129,
    TextTooLong = 3163,
    RecordDeleted = 3167,
    OutOfOverflow = 3190,
    ChangedUnderneath = 3197,
    NotSupported = 3251,
    NotInCollection = 3265,
    FieldDefinitionSyntax = 3292,
    ValueRequired = 3314,
    ZeroLengthText = 3315,
    UnknownFormat = 3343,
    NoSuchTableOrConstraint = 3371,
    FieldExists = 3380,
    ObjectClosed = 3420,
    DataTypeConversion = 3421,
    CancelledByObject = 3426,
};

/// Raises basic::RuntimeError with the number and its description; `name` stands where the description names
/// a file, table, field or index.
[[noreturn]] void raise(EngineError error, std::string_view name = {});

} // namespace dao
