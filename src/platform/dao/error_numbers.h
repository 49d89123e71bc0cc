#pragma once

// The numbers of the Data Access Objects' errors, as basic::RuntimeError carries them.

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

/// True when `number` is that error's.
[[nodiscard]] constexpr bool is(int number, EngineError error) {
    return number == static_cast<int>(error);
}

} // namespace dao
