// The files of the configuration as texts: as they were read, and as they are to be. Whoever edits them here
// changes nothing on the disk.
#pragma once

#include "platform/files.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A file when it was read. Its name is the one that the configuration has for it ("/etc/atm/pvcconf0.1").
struct FileAsRead {
    std::string content;
    bool exists = false;
    int error = 0;          // errno: something is there, and it cannot be read
    struct stat status {};  // zero when it cannot be had
};

class ConfigFiles {
  public:
    // Reads the file when it is asked for the first time.
    const FileAsRead& read(const std::string& name);

    // The file's place with symbolic links followed, also of one that is not there; empty when that fails.
    const platform::HostPath& place(const std::string& name);

    // The text to edit: at first what was read. A file that is not there has an empty one, and comes into
    // being with the first text that is not empty.
    std::string& text(const std::string& name);

    // Replaces the text.
    void write(const std::string& name, std::string text);

    // The text as it is now; empty without a file.
    const std::string& now(const std::string& name);

    // The file is not there any more. text() brings it back.
    void remove(const std::string& name);

    // The files whose text is no longer what was read, by name; nothing: to be removed. The texts are good
    // until the next edit.
    std::map<std::string, std::optional<std::string_view>> edits() const;

    // Whether each file that was read is still the same: its number, size and times, and the place, if that
    // was asked for.
    bool standAsRead() const;
    bool standsAsRead(const std::string& name);

    // When the last of the files that were read was written; zero: none is there.
    timespec lastWritten() const;

    // Giving a file another name changes its time. Takes it as it is now, of this file under all its names.
    void takeTimeOfChange(const std::string& name);

    // Forgets everything, so that it is read again.
    void clear() { entries_.clear(); }

  private:
    struct Entry {
        FileAsRead file;
        std::optional<platform::HostPath> place;
        std::optional<std::string> edited;
        bool removed = false;
    };
    Entry& entry(const std::string& name);
    static bool stands(const std::string& name, const Entry& entry);

    std::map<std::string, Entry> entries_;
};
