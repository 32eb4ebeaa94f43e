// The time of day, for people; what is measured or waited for goes by a monotonic clock.
#pragma once

#include <chrono>
#include <ctime>
#include <string>

namespace platform {

// "2026-02-03T04:05:06+01:00" in the local time zone (RFC 3339).
std::string dateAndTime(std::time_t time);

// The moment of such a time; 0 for any other text.
std::time_t momentOf(const std::string& dateAndTime);
// Such a time in UTC, "2026-02-03T03:05:06Z"; any other text as it is.
std::string inUtc(const std::string& dateAndTime);
// A moment in UTC, "2026-02-03T03:05:06.250Z".
std::string inUtc(std::chrono::system_clock::time_point moment);

// "Feb  3 04:05:06" in the local time zone, whatever the language: how a line for syslog begins (RFC 3164).
std::string syslogTime(std::time_t time);

}  // namespace platform
