// The first parameter file of a system.
#pragma once

#include "change/configuration.h"
#include "config/newparameters.h"

#include <optional>
#include <span>

// There is nothing at its place; not, when that cannot be told.
bool parameterFileIsMissing();

// Writes one with a section for each of these adapters (0 to 3, ascending), and every key at its default,
// under the configuration's lock. A file that has appeared meanwhile stays as it is, and is a failure only
// with mustBeNew.
struct NewFile {
    std::int32_t uniRevision = uni30;
    bool mustBeNew = false;
};
std::optional<SaveFailure> writeFirstFile(Configuration& configuration, std::span<const int> adapters,
                                          const NewFile& wanted = {});
