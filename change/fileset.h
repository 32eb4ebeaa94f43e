// Replaces and removes several files as one: after any failure, and after a loss of power at any moment,
// either all are the old ones or all are the new ones.
//
// Copies of the new content, complete and on the disk, stand beside the files before the first one takes its
// place. Of a single file the renaming commits. Of several a record (saverecord.h) commits, which is removed
// when all is done; recoverFiles completes what such a record says. The caller holds the configuration's
// lock.
#pragma once

#include "platform/openfile.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct FileEdit {
    std::string name;                         // for people, as the configuration names it
    platform::HostPath place;                 // symbolic links followed
    bool exists = true;                       // there is such a file
    std::optional<std::string_view> content;  // that it gets; without one it is removed
    // That it has, if the caller knows and `asRead` makes sure of it.
    std::optional<std::string_view> before = {};
    // Whose owner, mode and attributes it gets; none: it keeps its own.
    std::shared_ptr<const platform::OpenFile> like = {};
};

struct SaveOutcome {
    enum class State {
        done,
        asBefore,    // nothing has changed, or everything was put back
        outdated,    // nothing has changed, since a file is no longer what was read
        unfinished,  // some files are new; the next recoverFiles makes the others new, too
    };
    State state = State::done;
    int error = 0;         // also with `done`: the new files are there, but perhaps not on the disk
    std::string file;      // name of the file that failed
    bool putBack = false;  // files had been replaced already, and were put back
};

// `asRead` is asked right before the first file changes; false ends the save as outdated.
SaveOutcome replaceFiles(const platform::HostPath& record, std::span<const FileEdit> edits,
                         const std::function<bool()>& asRead);

// Completes the save that a record tells of, if there is one. A file that somebody has changed since is left
// alone. Appends a sentence for each thing worth saying. 0, or the errno of what failed: the record stays,
// and nothing may be saved.
int recoverFiles(const platform::HostPath& record, std::vector<std::string>& notes);
