#pragma once

#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

/// A child process that ends with what `work` returns (0 to 97), or with 99 for an exception.
template <typename Work>
pid_t startChild(Work&& work) {
    const pid_t child = fork();
    if (child == 0) {
        try {
            _exit(static_cast<int>(work()));
        } catch (...) {
            _exit(99);
        }
    }
    return child;
}

/// Waits for a child's end: what it returned, 98 when it was killed.
inline int endOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
}

/// What `work` returns in a child process.
template <typename Work>
int inChild(Work&& work) {
    return endOf(startChild(std::forward<Work>(work)));
}

/// The same in a child that has no special rights; root passes every permission.
template <typename Work>
int asOtherUser(Work&& work) {
    constexpr uid_t nobody = 65534;
    return inChild([&] {
        const bool ordinary = geteuid() != 0 || (setegid(nobody) == 0 && seteuid(nobody) == 0);
        return ordinary ? static_cast<int>(work()) : 99;
    });
}

/// A file system of a few hundred kilobytes ("size=600k") over `folder`, in this process alone; false without
/// the right to mount.
inline bool mountSmall(const std::string& folder, const char* size) {
    return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", folder.c_str(), "tmpfs", 0, size) == 0;
}
