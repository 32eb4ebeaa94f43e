// A private root directory with empty dev/ and etc/atm/, named in TARVOLIN_ROOT while the object lives.
#pragma once

#include <filesystem>
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
    bool exists(std::string_view systemPath) const;
    int temporaryCopies() const;  // and records of saves, that are there

  private:
    std::filesystem::path path_;
};
