// A change that is taken back unless somebody confirms it in time.
//
// It is noted in a file (doc/history.md) before it begins, under the lock, and a process of its own, the
// guard, waits for its end: without terminal and session, so that it outlives shell and connection. While a
// change waits nobody else changes anything. A guard that is gone (killed, or with the system) is taken over
// by the next program that root starts.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

struct PendingChange {
    unsigned change = 0;  // of the history
    std::string boot;     // platform::bootId() of the start of the system that the deadline counts from
    double deadline = 0;  // seconds since that start, also those that the system slept
    std::string user, from;
    pid_t guard = 0;
    std::string guardBegin = {};  // processBegin() of the guard
    bool driver = true;           // it is told of the change
    // As long as the change is not made: the process that makes it, and the services that it changes (their
    // paths).
    bool made = false;
    pid_t maker = 0;
    std::string makerBegin = {};
    std::vector<std::string> services = {};

    // Seconds; not above 0: the time is over, the system was started anew, or the change will not be made.
    double left() const;
    bool guarded() const;  // its guard lives
    // "change 0042 of root from 10.1.2.3, which waits 93 seconds for its confirmation"
    std::string words() const;
};

// The one that waits; nothing: none does, or its record cannot be read.
std::optional<PendingChange> pendingChange();
// The same; false: the record cannot be read.
bool readPendingChange(std::optional<PendingChange>& pending);
// 0, or -1 and errno.
int notePending(const PendingChange& pending);
int removePending();

// The moment so many seconds from now, as a deadline.
double deadlineIn(double seconds);

// Starts the guard of a change, which calls `takeBack` with its number when the time is over, under the lock
// or not as that does. 0, or -1 and errno.
using TakeBack = std::function<void(unsigned change)>;
int startGuard(PendingChange pending, const TakeBack& takeBack);
