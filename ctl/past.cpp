#include "ctl/past.h"

#include "ctl/status.h"
#include "platform/number.h"
#include "platform/safetext.h"

#include <algorithm>
#include <cstring>
#include <fmt/format.h>

unsigned readChangeNumber(const std::string& text) {
    if (text.empty() || text.find_first_not_of("0123456789") != text.npos)
        throw Failure(Status::usage, fmt::format("\"{}\" is no number of a change", platform::escaped(text)));
    return platform::wholeNumber<unsigned>(text).value_or(0);
}

std::vector<PastChange> allChanges(std::vector<unsigned>* damaged) {
    std::vector<PastChange> changes;
    if (const int error = readPastChanges(changes, damaged))
        throw Failure(Status::wrongValue, fmt::format("the history: {}", std::strerror(error)));
    return changes;
}

const PastChange& findChange(const std::string& text, const std::vector<PastChange>& changes) {
    const auto change = std::ranges::find(changes, readChangeNumber(text), &PastChange::number);
    if (change == changes.end()) throw Failure(Status::notThere, fmt::format("there is no change {}", text));
    return *change;
}

std::vector<PastFile> filesBeforeChange(const PastChange& change, const std::vector<PastChange>& changes) {
    PastFiles past = filesBefore(change.number, changes);
    if (past.error)
        throw Failure(Status::wrongValue, fmt::format("{}: {}", past.edited, std::strerror(past.error)),
                      past.edited);
    if (past.missing)
        throw Failure(Status::wrongValue,
                      fmt::format("the history does not have change {:04}, or not all of it", past.missing));
    if (!past.edited.empty())
        throw Failure(Status::changedMeanwhile,
                      fmt::format("{} is not as the last change left it", past.edited), past.edited);
    return std::move(past.files);
}
