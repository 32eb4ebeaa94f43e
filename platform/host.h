// The computer that the program runs on.
#pragma once

#include <string>

namespace platform {

// Its name, at most 64 bytes; empty when the system does not tell.
std::string hostName();

// What the kernel has chosen at random when it started (36 characters: digits, a to f, hyphens): the same as
// long as this start lasts. Empty when the system does not tell. Read from the system's own /proc, also below
// a root directory.
std::string bootId();

// When a process was started, in the kernel's ticks, which tells it from a later one of the same number;
// empty when there is none, or nothing of it but its number.
std::string processBegin(pid_t process);

}  // namespace platform
