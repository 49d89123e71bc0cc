#pragma once

#include "error_numbers.h"

#include "jet/error.h"

#include <string_view>

// The engine's errors as the program meets them: numbers and English descriptions of the Data Access Objects.

namespace dao {

/// Raises basic::RuntimeError with the number and its description; `name` stands where the description names
/// a file, table, field or index.
[[noreturn]] void raise(EngineError error, std::string_view name = {});

/// The same for an error of the storage engine. `name` is the file or object that was being worked on. What
/// the descriptions are silent about (where a file is damaged, why it cannot be changed) is added to them.
[[noreturn]] void raise(const jet::Error& error, std::string_view name);

/// The same where an object of the database in `file` was being worked on: what is wrong with the file as a
/// whole names that.
[[noreturn]] void raise(const jet::Error& error, std::string_view name, std::string_view file);

/// Runs `action` and raises what the storage engine throws by the rule above.
template <typename Action>
auto translated(std::string_view name, Action&& action) {
    try {
        return action();
    } catch (const jet::Error& error) {
        raise(error, name);
    }
}

template <typename Action>
auto translated(std::string_view name, std::string_view file, Action&& action) {
    try {
        return action();
    } catch (const jet::Error& error) {
        raise(error, name, file);
    }
}

} // namespace dao
