// Completing the save of a process that did not come to its end.
#include "change/fileset.h"
#include "change/filesteps.h"
#include "platform/openfile.h"
#include "platform/stream.h"

#include <cerrno>
#include <fmt/format.h>
#include <unistd.h>

using platform::files;
using platform::HostPath;

namespace {

enum class Progress {
    done,
    due,
    edited,  // the file is neither the old nor the new one
    lost,    // the file is the old one, and there is no copy
};

// What identifies the content of a file, or an empty text when it cannot be told.
std::string contentAt(const HostPath& place) {
    std::string content;
    if (platform::readWhole(place, content)) return contentHash(content);
    return errno == ENOENT ? noContent : "";
}

Progress progressOf(const SaveStep& step) {
    const std::string now = contentAt(step.place);
    if (step.removes()) {
        struct stat status {};
        if (now == noContent) return Progress::done;
        const bool same = now == step.before && files().status(step.place, status) == 0 &&
                          fileIdentity(status) == step.identity;
        return same ? Progress::due : Progress::edited;
    }
    if (now != step.before && now != step.after) return Progress::edited;
    if (contentAt(step.copyPlace()) == step.after) return Progress::due;
    return now == step.after ? Progress::done : Progress::lost;
}

// A record says what to remove and what to replace, anywhere: that of somebody else is not obeyed.
bool readRecord(const HostPath& record, std::string& text) {
    struct stat status {};
    const platform::OpenFile file(platform::openRegular(record, status));
    if (!file) return false;
    if (status.st_uid == ::geteuid() && !(status.st_mode & (S_IWGRP | S_IWOTH)))
        return platform::readNew(file.descriptor(), status, text);
    errno = EPERM;
    return false;
}

// The save's version of a file that somebody has edited since stays beside it, under a name that is free. Its
// name, or nothing when there is no such version; 0, or -1 and errno.
int keepVersion(const SaveStep& step, std::string& kept) {
    if (step.removes()) return 0;
    const bool there = contentAt(step.copyPlace()) == step.after;
    for (int number = 1; number < 1000; ++number) {
        const HostPath place{
            fmt::format("{}.unsaved{}", step.place.text, number == 1 ? "" : std::to_string(number))};
        const std::string content = contentAt(place);
        if (content == noContent && !there) return 0;
        if (content != noContent && content != step.after) continue;
        // An earlier recovery may have come as far as this.
        kept = place.text;
        return there ? files().rename(step.copyPlace(), place) : 0;
    }
    errno = EEXIST;
    return -1;
}

}  // namespace

int recoverFiles(const HostPath& record, std::vector<std::string>& notes) {
    std::string text;
    if (!readRecord(record, text)) return errno == ENOENT ? 0 : errno;
    const std::optional<std::vector<SaveStep>> steps = parseSaveRecord(text);
    std::vector<Progress> progress;
    bool begun = false, lost = false;
    for (const SaveStep& step : steps.value_or(std::vector<SaveStep>())) {
        progress.push_back(progressOf(step));
        begun |= progress.back() == Progress::done && step.before != step.after;
        lost |= progress.back() == Progress::lost;
    }
    // A copy that is not there although no file was replaced: the power failed before the record was
    // committed.
    const bool committed = steps && (begun || !lost);
    if (!committed) {
        if (steps) removeCopies(*steps);
        notes.push_back("An interrupted save was dropped: some of its copies are missing.");
        return files().remove(record) == 0 ? 0 : errno;
    }
    for (std::size_t i = 0; i < steps->size(); ++i) {
        const SaveStep& step = (*steps)[i];
        if (progress[i] == Progress::due && takeStep(step) != 0) return errno;
        if (progress[i] == Progress::due)
            notes.push_back(
                fmt::format("{} was brought up to date after an interrupted save.", step.place.text));
        if (progress[i] == Progress::done && step.before != step.after)
            notes.push_back(
                fmt::format("{} had been replaced already by an interrupted save.", step.place.text));
        if (progress[i] == Progress::edited || progress[i] == Progress::lost)
            notes.push_back(
                fmt::format("{} was changed since an interrupted save, and left alone.", step.place.text));
        std::string kept;
        if (progress[i] == Progress::edited && keepVersion(step, kept) != 0) return errno;
        if (!kept.empty()) notes.back() += fmt::format(" The save's version is in {}.", kept);
    }
    if (syncDirectories(*steps, &record) != 0) return errno;
    return files().remove(record) == 0 ? 0 : errno;
}
