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
