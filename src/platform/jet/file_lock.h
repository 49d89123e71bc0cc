#pragma once

#include "file.h"

#include <memory>

namespace jet {

/// Keeps other processes away from an open file. It is a lock of the system on the file itself, so it ends
/// with the process however that ends, and leaves nothing behind.
class FileLock;

/// Locks the file behind an open descriptor: shared to read, alone to write. This process may lock a file
/// several times; they share one lock, which ends with the last of them. Null on a file system without locks.
/// InUse when another process holds the file.
[[nodiscard]] std::shared_ptr<FileLock> lockFile(int descriptor, OpenMode mode, const std::string& path);

} // namespace jet
