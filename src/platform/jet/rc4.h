#pragma once

#include "bytes.h"

namespace jet {

/// XORs `bytes` with the RC4 key stream of `key`, taken as four little-endian bytes.
void rc4(ByteSpan bytes, std::uint32_t key);

} // namespace jet
