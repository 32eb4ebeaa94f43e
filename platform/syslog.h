// Lines for the system's log, as "tarvolin[pid]", by datagrams to the log daemon's socket. The C library's
// syslog() would wait for a daemon that has stopped reading, and knows no root directory.
#pragma once

#include <string_view>

namespace platform {

// Of the facility for security and authorization: who changed what is for administrators' eyes.
enum class LogLevel { warning = 4, notice = 5 };

// Sends one line; a control character in it becomes '?', and it is cut at 2000 bytes. False when the line is
// lost: that is said on the debug log, with the line, and the program goes on. A daemon that does not keep up
// is waited for a fifth of a second; then lines are lost at once until it has taken one again.
bool sendSyslog(LogLevel level, std::string_view line);

// How many lines were lost since the program started.
unsigned long lostSyslogLines();

}  // namespace platform
