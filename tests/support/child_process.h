#pragma once

#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

/// What `work` returns (0 to 97) in a child process.
template <typename Work>
int inChild(Work&& work) {
    const pid_t child = fork();
    if (child == 0) {
        try {
            _exit(static_cast<int>(work()));
        } catch (...) {
            _exit(99);
        }
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
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
