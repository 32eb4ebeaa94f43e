#include "change/firstfile.h"

#include "change/audit.h"
#include "change/fileset.h"
#include "platform/files.h"

#include <cerrno>
#include <cstring>
#include <fmt/format.h>

using namespace std::chrono_literals;
using platform::files;
using platform::HostPath;

namespace {

constexpr const char* name = PdfEdit::parameterFile;

// 0: something is there; ENOENT: nothing; or why that cannot be told.
int lookFor(const HostPath& place) {
    struct stat status {};
    return files().status(place, status) == 0 ? 0 : errno;
}
bool isMissing(const HostPath& place) {
    return lookFor(place) == ENOENT;
}

SaveFailure failure(const std::string& file, int error) {
    return {.file = file, .reason = std::strerror(error)};
}

std::optional<SaveFailure> thereAlready(const NewFile& wanted) {
    if (!wanted.mustBeNew) return {};
    return failure(name, EEXIST);
}

// Under the lock.
std::optional<SaveFailure> write(std::span<const int> adapters, const NewFile& wanted) {
    HostPath place = platform::hostPath(name);
    const HostPath directory = platform::directoryOf(place);
    if (isMissing(directory) && (files().makeDirectory(directory, 0755) != 0 ||
                                 platform::syncDirectory(platform::directoryOf(directory)) != 0))
        return failure("/etc/atm", errno);
    if (files().resolve(place, place) != 0) return failure(name, errno);
    const std::string text = newParameters(
        adapters, [](const std::string& list) { return isMissing(platform::hostPath(list)); },
        wanted.uniRevision);
    const FileEdit edit{.name = name, .place = place, .exists = false, .content = text};
    int found = ENOENT;
    const SaveOutcome outcome = replaceFiles(Configuration::saveRecord(place), std::span(&edit, 1), [&] {
        found = lookFor(place);
        return found == ENOENT;
    });
    if (outcome.state == SaveOutcome::State::done) auditFirstFile(name);
    if (outcome.error) return failure(outcome.file, outcome.error);
    if (found == 0) return thereAlready(wanted);
    if (found != ENOENT) return failure(name, found);
    return {};
}

}  // namespace

bool parameterFileIsMissing() {
    return isMissing(platform::hostPath(name));
}

std::optional<SaveFailure> writeFirstFile(Configuration& configuration, std::span<const int> adapters,
                                          const NewFile& wanted) {
    std::string failed;
    if (const int error = configuration.lock(5s, failed)) {
        if (error == EWOULDBLOCK || error == EINTR)
            return SaveFailure{
                .file = name,
                .reason = fmt::format("the configuration is being changed by {}", configuration.holder())};
        return failure(failed, error);
    }
    // A save that somebody else has not finished may have been completed with the lock.
    const int found = lookFor(platform::hostPath(name));
    std::optional<SaveFailure> result;
    if (found == ENOENT)
        result = write(adapters, wanted);
    else
        result = found ? failure(name, found) : thereAlready(wanted);
    configuration.unlock();
    return result;
}
