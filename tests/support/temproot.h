// A private root directory with empty dev/ and etc/atm/, named in TARVOLIN_ROOT while the object lives.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

// The text of a file that stands beside the tests' sources.
std::string testFile(std::string_view name);

class TempRoot {
  public:
    TempRoot();
    ~TempRoot();
    TempRoot(const TempRoot&) = delete;
    TempRoot& operator=(const TempRoot&) = delete;

    const std::filesystem::path& path() const { return path_; }

    // The place of a system path below this root.
    std::filesystem::path at(std::string_view systemPath) const;

    // Makes the directory, too.
    void write(std::string_view systemPath, std::string_view content) const;
    std::string read(std::string_view systemPath) const;
    // As somebody edits it, at the first such place, which has to be there.
    void edit(std::string_view systemPath, std::string_view from, std::string_view to) const;
    bool exists(std::string_view systemPath) const;
    // The texts of the regular files in a directory, by their system paths.
    std::map<std::string, std::string> files(std::string_view directory) const;
    int temporaryCopies() const;  // and records of saves, that are there

  private:
    std::filesystem::path path_;
};
