#pragma once

#include "basic/runtime_error.h"

/// The number of the error that `action` raises; 0 for none.
template <typename Action>
int errorOf(Action action) {
    try {
        action();
        return 0;
    } catch (const basic::RuntimeError& error) {
        return error.number();
    }
}
