#pragma once

#include "basic/runtime_error.h"

#include <utility>

/// The number of the run-time error that `call` raises; 0 when it raises none.
template <typename Call>
int errorOf(Call&& call) {
    try {
        std::forward<Call>(call)();
    } catch (const basic::RuntimeError& error) {
        return error.number();
    }
    return 0;
}
