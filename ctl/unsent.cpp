#include "ctl/unsent.h"

#include "change/saverecord.h"
#include "change/statedirectory.h"
#include "config/pdfedit.h"
#include "driver/dai_api.h"
#include "platform/files.h"
#include "platform/stream.h"
#include "platform/wallclock.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

bool isParameterFile(const KeptFile& file) {
    return file.name == PdfEdit::parameterFile;
}

const KeptFile* parameterFileOf(const PastChange& change) {
    const auto& files = change.read.manifest.files;
    const auto found = std::ranges::find_if(files, isParameterFile);
    return found == files.end() ? nullptr : &*found;
}

// What has been written there since a moment; false: nothing.
bool writtenSince(std::time_t moment, const platform::HostPath& place, std::string& content) {
    struct stat status {};
    return platform::files().status(place, status) == 0 && status.st_mtim.tv_sec > moment &&
           platform::readWhole(place, content);
}

}  // namespace

std::time_t driverLoaded() {
    struct stat node {};
    return platform::files().status(platform::hostPath(devbase), node) == 0 ? node.st_ctim.tv_sec : 0;
}

Unsent::Unsent() : loaded_(driverLoaded()) {
    readPastChanges(changes_);
    lookForEdits();
}

// Each version of the parameter file since the driver was loaded: the present one, and those that changes
// have replaced.
void Unsent::lookForEdits() {
    std::string content;
    edited_ =
        writtenSince(loaded_, platform::hostPath(PdfEdit::parameterFile), content) && !isAsLeft(0, content);
    for (std::size_t i = 0; i < changes_.size(); ++i) {
        const PastChange& change = changes_[i];
        if (platform::momentOf(change.read.time) < loaded_) return;
        const KeptFile* const file = parameterFileOf(change);
        if (!file || file->stored.empty()) continue;
        const platform::HostPath kept = platform::hostPath(
            fmt::format("{}/{}/{}", historyDirectory, change.read.manifest.number, file->stored));
        if (writtenSince(loaded_, kept, content) && !isAsLeft(i + 1, content))
            foundEdited_.insert(change.number);
    }
}

// As the last change that replaced it has left it; `since`: the place of the newest that counts. What the
// history does not have any more is taken for the doing of a change.
bool Unsent::isAsLeft(std::size_t since, const std::string& content) const {
    for (std::size_t i = since; i < changes_.size(); ++i)
        if (const KeptFile* const file = parameterFileOf(changes_[i]))
            return file->after == contentHash(content);
    return !changes_.empty() && changes_.back().number > 1;
}

bool Unsent::changed(const std::string& service, std::string_view key) const {
    if (edited_) return true;
    const std::string where = fmt::format("{}.{}", service, key);
    const auto isKey = [&](const KeyChange& each) { return each.key == where; };
    const auto isSent = [&](const SentRequest& each) {
        return each.service == service && each.subject.empty() && each.answer == RequestResult::taken;
    };
    for (const PastChange& change : changes_) {
        const ChangeRecord& record = change.read.record;
        if (platform::momentOf(change.read.time) < loaded_) return false;
        if (std::ranges::any_of(record.requests, isSent)) return false;
        if (std::ranges::any_of(record.keys, isKey) || foundEdited_.contains(change.number)) return true;
    }
    return false;
}
