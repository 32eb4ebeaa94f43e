// The history as it stands: what the changes so far were, and how the files were before one of them.
#pragma once

#include "change/manifest.h"
#include "platform/openfile.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

struct PastChange {
    unsigned number = 0;
    ReadManifest read;
};

// Newest first; those without a whole manifest are left out. `damaged` gets the numbers of changes whose
// manifest exists but is invalid, newest first; a killed save leaves no manifest. 0, or the errno of a
// history that cannot be read.
int readPastChanges(std::vector<PastChange>& changes, std::vector<unsigned>* damaged = nullptr);

// The number that the next change gets.
unsigned nextChange();

// A file as it was: its content, or nothing where there was none.
struct PastFile {
    std::string name;  // without the root directory
    std::optional<std::string> content;
    std::shared_ptr<const platform::OpenFile> like = {};  // has its owner, mode and attributes
};

struct PastFiles {
    std::vector<PastFile> files = {};
    // A file that is not as the last change left it, or of which that is not known; empty: there is none.
    std::string edited = {};
    int error = 0;         // errno: `edited` cannot be read; it may be a file of the history
    unsigned missing = 0;  // a later change that the history does not have any more
};

// The files that a change or a later one replaced, as they were before it. Those that are so already, owner
// and mode included, are left out.
PastFiles filesBefore(unsigned number, const std::vector<PastChange>& changes);

// The files that a change which had to be confirmed has replaced, and what it has put there.
struct ReplacedFiles {
    std::vector<PastFile> before, after;
};
// Nothing: the history does not have all of it.
std::optional<ReplacedFiles> replacedFiles(const PastChange& change);
