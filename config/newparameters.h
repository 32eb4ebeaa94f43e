// The text of a first parameter file: every section and key that the key tables have, with the defaults of
// the records and comments.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

// What Setup makes of a UNI revision that nobody has set, and what new systems are to have.
constexpr std::int32_t uni30 = 30, uni31 = 31;

// `adapters` (0 to 3, ascending) get a section each. `isFree` says of a list file whether its default name
// can be given: a list that is there already would come into force.
std::string newParameters(std::span<const int> adapters,
                          const std::function<bool(const std::string& listFile)>& isFree,
                          std::int32_t uniRevision = uni30);
