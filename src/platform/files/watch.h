#pragma once

#include <string>

// Every call of this room to the system passes one gate before it is made.

namespace files {

enum class Call {
    Status,
    ResolveLinks,
    Open,
    Read,
    Write,
    Copy,
    Sync,
    Close,
    Lock,
    Rename,
    Link,
    Remove,
    SetMode,
    SetOwner,
    Attribute,
    MakeFolder,
    ListFolder,
    SyncFolder,
};

/// Sees each call before it is made. Tests let calls fail with it, write down their order, or end the
/// process.
class Watch {
  public:
    virtual ~Watch() = default;
    /// 0 lets the call be made; any other number is the error that it fails with.
    virtual int before(Call call, const std::string& path) = 0;
};

/// Puts `watch` before all calls of this process, null for none. Returns the one that stood there.
Watch* setWatch(Watch* watch);

/// What the watch says to a call; sets errno when it is an error.
[[nodiscard]] bool allowed(Call call, const std::string& path);

} // namespace files
