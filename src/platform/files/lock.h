#pragma once

#include "open_file.h"

#include <memory>

namespace files {

enum class LockFor { Reading, Writing };

/// Keeps other processes away from a file. It is a lock of the system on the file itself, so it ends with the
/// process however that ends, and leaves nothing behind. When this process replaces the file, the lock goes
/// over to what stands in its place.
class FileLock;

/// Locks an open file: shared to read, alone to write. This process may lock a file several times; they share
/// one lock, which ends with the last of them. Null on a file system without locks. Error EWOULDBLOCK when
/// another process holds the file.
[[nodiscard]] std::shared_ptr<FileLock> lock(const OpenFile& file, LockFor what);

/// Locks it alone for as long as it is open. False when anyone holds it, this process too, or the file system
/// has no locks.
[[nodiscard]] bool lockUnshared(const OpenFile& file);

/// The lock that this process holds on `replaced`, which lost its name to the file that `held` is on, is one
/// on that file from here on. The return value takes the place of `held`.
[[nodiscard]] std::shared_ptr<FileLock> takeOver(const FileId& replaced, std::shared_ptr<FileLock> held);

} // namespace files
