// The files of the configuration as texts: as they were read, and as they are to be. Whoever edits them here
// changes nothing on the disk.
#pragma once

#include "platform/files.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

// A file when it was read. Its name is the one that the configuration has for it ("/etc/atm/pvcconf0.1").
struct FileAsRead {
    std::string content;
    bool exists = false;
    int error = 0;             // errno: something is there, and it cannot be read
    platform::HostPath place;  // symbolic links followed; empty when that failed
    struct stat status {};     // when it exists
};

class ConfigFiles {
  public:
    // Reads the file when it is asked for the first time.
    const FileAsRead& read(const std::string& name);

    // The text to edit: at first what was read. A file that is not there has an empty one, and comes into
    // being with the first text that is not empty.
    std::string& text(const std::string& name);

    // The text as it is now; empty without a file.
    const std::string& now(const std::string& name);

    // The file is not there any more. text() brings it back.
    void remove(const std::string& name);

    // The files whose text is no longer what was read, by name; nothing: to be removed.
    std::map<std::string, std::optional<std::string>> edits() const;

    // Whether each file that was read is still the same: its place, number, size and times.
    bool standAsRead() const;

    // Giving a file another name changes its time. Takes the times as they are now, of this one file.
    void takeTimeOfChange(const std::string& name);

    // Forgets everything, so that it is read again.
    void clear() { entries_.clear(); }

  private:
    struct Entry {
        FileAsRead file;
        std::optional<std::string> edited;
        bool removed = false;
    };
    Entry& entry(const std::string& name);

    std::map<std::string, Entry> entries_;
};
