#include "change/filesteps.h"

#include "platform/openfile.h"
#include "platform/stream.h"

#include <cerrno>
#include <fcntl.h>
#include <set>

using platform::files;
using platform::HostPath;

int takeStep(const SaveStep& step) {
    return step.removes() ? files().remove(step.place) : files().rename(step.copyPlace(), step.place);
}

int writeRecord(const HostPath& record, std::span<const SaveStep> steps) {
    const std::optional<std::string> text = saveRecordText(steps);
    if (!text) {
        errno = EINVAL;
        return -1;
    }
    platform::OpenFile file(files().open(record, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600));
    if (!file) return -1;
    int error =
        platform::writeAll(file.descriptor(), *text) == 0 && files().sync(file.descriptor()) == 0 ? 0 : errno;
    if (file.close() != 0 && error == 0) error = errno;
    if (error == 0) return 0;
    files().remove(record);
    errno = error;
    return -1;
}

int syncDirectories(std::span<const SaveStep> steps, const HostPath* record) {
    std::set<std::string> directories;
    for (const SaveStep& step : steps) directories.insert(platform::directoryOf(step.place).text);
    if (record) directories.insert(platform::directoryOf(*record).text);
    for (const std::string& directory : directories)
        if (platform::syncDirectory({directory}) != 0) return -1;
    return 0;
}

void removeCopies(std::span<const SaveStep> steps) {
    for (const SaveStep& step : steps)
        if (!step.removes()) files().remove(step.copyPlace());
}
