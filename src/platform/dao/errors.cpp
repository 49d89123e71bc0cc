#include "errors.h"

#include "basic/runtime_error.h"

#include <array>
#include <string>

namespace dao {

namespace {

/// A description; the name takes the place of "|".
struct Description {
    EngineError error;
    std::string_view text;
};

constexpr std::array descriptions = {
    Description{EngineError::NoSuchIndex,
                "'|' isn't an index in this table.  Look in the Indexes collection of the TableDef object to "
                "determine the valid index names."},
    Description{EngineError::NoIndexChosen, "Operation invalid without a current index."},
    Description{EngineError::UpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit."},
    Description{EngineError::NoCurrentRecord, "No current record."},
    Description{
        EngineError::DuplicateKey,
        "The changes you requested to the table were not successful because they would create duplicate "
        "values in the index, primary key, or relationship.  Change the data in the field or fields that "
        "contain duplicate data, remove the index, or redefine the index to permit duplicate entries and "
        "try again."},
    Description{EngineError::FileNotFound, "Could not find file '|'."},
    Description{EngineError::DiskFull, "Not enough space on disk."},
    Description{EngineError::CannotUpdate, "Cannot update.  Database or object is read-only."},
    Description{EngineError::NotAPassword, "Not a valid password."},
    Description{EngineError::DiskError, "Disk or network error."},
    Description{EngineError::PathNotFound,
                "'|' isn't a valid path.  Make sure that the path name is spelled correctly and that you are "
                "connected to the server on which the file resides."},
    Description{EngineError::FileInUse, "Couldn't use '|'; file already in use."},
    Description{EngineError::RecordTooLarge, "Record is too large."},
    Description{
        EngineError::DamagedDatabase,
        "Cannot open database '|'.  It may not be a database that your application recognizes, or the "
        "file may be corrupt."},
    Description{
        EngineError::NoPermission,
        "The Microsoft Jet database engine cannot open the file '|'.  It is already opened exclusively by "
        "another user, or you need permission to view its data."},
    Description{EngineError::NullKey, "Index or primary key can't contain a Null value."},
    Description{
        EngineError::NoSuchTable,
        "The Microsoft Jet database engine cannot find the input table or query '|'.  Make sure it exists "
        "and that its name is spelled correctly."},
    Description{EngineError::StatementExpected,
                "Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'."},
    Description{EngineError::TextTooLong,
                "The field is too small to accept the amount of data you attempted to add.  Try inserting or "
                "pasting less data."},
    Description{EngineError::RecordDeleted, "Record is deleted."},
    Description{EngineError::ChangedUnderneath,
                "The Microsoft Jet database engine stopped the process because you and another user are "
                "attempting to change the same data at the same time."},
    Description{EngineError::NotSupported, "Operation is not supported for this type of object."},
    Description{EngineError::NotInCollection, "Item not found in this collection."},
    Description{EngineError::FieldDefinition, "Syntax error in field definition."},
    Description{
        EngineError::ValueRequired,
        "The field '|' cannot contain a Null value because the Required property for this field is set to "
        "True.  Enter a value in this field."},
    Description{EngineError::ZeroLengthText, "Field '|' can't be a zero-length string."},
    Description{EngineError::UnknownFormat, "Unrecognized database format '|'."},
    Description{EngineError::NoTableOrConstraint, "Cannot find table or constraint."},
    Description{EngineError::FieldExists, "Field '|' already exists in table."},
    Description{EngineError::ObjectClosed, "Object invalid or no longer set."},
    Description{EngineError::DataTypeConversion, "Data type conversion error."},
    Description{EngineError::Cancelled, "This action was cancelled by an associated object."},
};

std::string describe(EngineError error, std::string_view name) {
    for (const auto& [number, text] : descriptions) {
        if (number != error) continue;
        std::string result(text);
        if (const auto mark = result.find('|'); mark != std::string::npos) result.replace(mark, 1, name);
        return result;
    }
    return basic::descriptionOf(static_cast<int>(error));
}

EngineError numberOf(jet::ErrorKind kind) {
    switch (kind) {
    case jet::ErrorKind::NotADatabase:
    case jet::ErrorKind::UnsupportedVersion:
        return EngineError::UnknownFormat;
    case jet::ErrorKind::WrongPassword:
        return EngineError::NotAPassword;
    case jet::ErrorKind::Corrupt:
        return EngineError::DamagedDatabase;
    case jet::ErrorKind::EncodedWrite:
    case jet::ErrorKind::UnsupportedSort:
        return EngineError::CannotUpdate;
    case jet::ErrorKind::DuplicateKey:
        return EngineError::DuplicateKey;
    case jet::ErrorKind::NullKey:
        return EngineError::NullKey;
    case jet::ErrorKind::NotFound:
        return EngineError::RecordDeleted;
    case jet::ErrorKind::AlreadyExists:
        return EngineError::FieldExists;
    case jet::ErrorKind::TextTooLong:
        return EngineError::TextTooLong;
    case jet::ErrorKind::TypeMismatch:
        return EngineError::DataTypeConversion;
    case jet::ErrorKind::RowTooLong:
        return EngineError::RecordTooLarge;
    case jet::ErrorKind::InvalidDesign:
        return EngineError::FieldDefinition;
    case jet::ErrorKind::Full:
        return EngineError::DiskFull;
    case jet::ErrorKind::ChangedUnderneath:
        return EngineError::ChangedUnderneath;
    case jet::ErrorKind::ReadOnly:
    case jet::ErrorKind::PermissionDenied:
        return EngineError::NoPermission;
    case jet::ErrorKind::FileNotFound:
        return EngineError::FileNotFound;
    case jet::ErrorKind::FolderNotFound:
        return EngineError::PathNotFound;
    case jet::ErrorKind::InUse:
        return EngineError::FileInUse;
    case jet::ErrorKind::Io:
        break;
    }
    return EngineError::DiskError;
}

} // namespace

void raise(EngineError error, std::string_view name) {
    throw basic::RuntimeError(static_cast<int>(error), describe(error, name));
}

void raise(const jet::Error& error, std::string_view name) {
    const EngineError number = numberOf(error.kind());
    std::string description = describe(number, name);
    if (number == EngineError::DamagedDatabase || number == EngineError::CannotUpdate ||
        error.kind() == jet::ErrorKind::UnsupportedVersion)
        description += " (" + error.text() + ")";
    throw basic::RuntimeError(static_cast<int>(number), description);
}

void raise(const jet::Error& error, std::string_view name, std::string_view file) {
    switch (numberOf(error.kind())) {
    case EngineError::UnknownFormat:
    case EngineError::DamagedDatabase:
    case EngineError::CannotUpdate:
    case EngineError::DiskFull:
    case EngineError::NoPermission:
    case EngineError::DiskError:
        raise(error, file);
    default:
        raise(error, name);
    }
}

} // namespace dao
