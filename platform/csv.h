// Comma-separated values (RFC 4180).
#pragma once

#include <span>
#include <string>

namespace platform {

// A record with its end, CR and LF. Fields stand between double quotes where they need them.
std::string csvRecord(std::span<const std::string> fields);

}  // namespace platform
