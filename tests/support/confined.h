// What a process under test may write to.
#pragma once

#include <fcntl.h>
#include <initializer_list>
#include <linux/landlock.h>
#include <string>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

// From now on this process and its children write, make, rename and remove files below these folders only.
// False, and nothing is restricted, where the kernel has no Landlock of version 2.
inline bool writesOnlyBelow(const std::initializer_list<std::string>& folders) {
    constexpr std::uint64_t writing = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                      LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                      LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SYM |
                                      LANDLOCK_ACCESS_FS_REFER;  // or nothing goes from folder to folder
    landlock_ruleset_attr handled{};
    handled.handled_access_fs = writing;
    const auto rules = static_cast<int>(::syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0));
    if (rules < 0) return false;
    bool good = true;
    for (const std::string& folder : folders) {
        const int below = ::open(folder.c_str(), O_PATH | O_CLOEXEC);
        landlock_path_beneath_attr allowed{};
        allowed.allowed_access = writing;
        allowed.parent_fd = below;
        good &= ::syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &allowed, 0) == 0;
        ::close(below);
    }
    good = good && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::syscall(SYS_landlock_restrict_self, rules, 0) == 0;
    ::close(rules);
    return good;
}
