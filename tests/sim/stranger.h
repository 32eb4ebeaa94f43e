// Somebody who is not the super-user. A test that needs one skips when it is not the super-user itself.
#pragma once

#include "tests/support/temproot.h"

#include <sys/wait.h>
#include <unistd.h>

// What the action returns in a process of another user, which lives until `until` has been called here.
// He may pass the root.
inline int asStranger(
    const TempRoot& root, const std::function<int()>& action, const std::function<void()>& until = [] {}) {
    std::filesystem::permissions(root.path(), std::filesystem::perms(0755));
    int ready[2], over[2];
    if (::pipe(ready) != 0 || ::pipe(over) != 0) return -1;
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(over[1]);
        if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(99);
        const auto result = static_cast<unsigned char>(action());
        char wait = 0;
        if (::write(ready[1], &result, 1) != 1 || ::read(over[0], &wait, 1) != 0) ::_exit(98);
        ::_exit(0);
    }
    ::close(ready[1]);
    ::close(over[0]);
    unsigned char result = 0;
    const bool came = ::read(ready[0], &result, 1) == 1;
    until();
    ::close(over[1]);
    ::close(ready[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return came && status == 0 ? result : -1;
}
