#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <utility>

/// What `work` returns (0 to 97) in a child process that has no special rights; root passes every permission.
template <typename Work>
int asOtherUser(Work&& work) {
    constexpr uid_t nobody = 65534;
    const pid_t child = fork();
    if (child == 0) {
        const bool ordinary = geteuid() != 0 || (setegid(nobody) == 0 && seteuid(nobody) == 0);
        _exit(ordinary ? static_cast<int>(std::forward<Work>(work)()) : 99);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
}
