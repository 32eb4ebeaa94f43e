// The system's file operations, with failures on demand: stands in front of those that are in place while the
// object lives.
#pragma once

#include "platform/files.h"

#include <optional>
#include <string>
#include <vector>

enum class FileCall {
    open,
    read,
    write,
    seek,
    truncate,
    sync,
    close,
    statusOf,
    statusAt,
    setMode,
    setOwner,
    rename,
    remove,
    resolve
};

class FailingFiles : public platform::Files {
  public:
    struct Call {
        FileCall kind;
        std::string path;  // of the first path named, empty for descriptors

        bool operator==(const Call&) const = default;
    };

    FailingFiles() : real_(platform::files()), before_(platform::setFiles(this)) {}
    ~FailingFiles() override { platform::setFiles(before_); }
    FailingFiles(const FailingFiles&) = delete;
    FailingFiles& operator=(const FailingFiles&) = delete;

    // The k-th call from now on (counted from 1), of any kind or of one, fails with `error`. Later calls work
    // again, unless `lasting`. A failing close closes all the same, as the system's does.
    void failAt(int k, int error, std::optional<FileCall> kind = std::nullopt, bool lasting = false);

    // Every write takes at most so many bytes, as a system may.
    void limitWrites(std::size_t bytes) { writeLimit_ = bytes; }

    bool failed() const { return failed_; }
    const std::vector<Call>& calls() const { return calls_; }
    int count(FileCall kind) const;

    int open(const platform::HostPath& path, int flags, mode_t mode) override;
    ssize_t read(int descriptor, void* bytes, size_t count) override;
    ssize_t write(int descriptor, const void* bytes, size_t count) override;
    off_t seek(int descriptor, off_t offset, int whence) override;
    int truncate(int descriptor, off_t length) override;
    int sync(int descriptor) override;
    int close(int descriptor) override;
    int status(int descriptor, struct stat& result) override;
    int status(const platform::HostPath& path, struct stat& result) override;
    int setMode(int descriptor, mode_t mode) override;
    int setOwner(int descriptor, uid_t user, gid_t group) override;
    int rename(const platform::HostPath& from, const platform::HostPath& to) override;
    int remove(const platform::HostPath& path) override;
    int resolve(const platform::HostPath& path, platform::HostPath& result) override;

  private:
    bool fails(FileCall kind, const std::string& path = {});

    platform::Files& real_;
    platform::Files* before_;
    std::vector<Call> calls_;
    int countdown_ = 0;
    int error_ = 0;
    std::optional<FileCall> kind_;
    bool lasting_ = false;
    bool failed_ = false;
    std::size_t writeLimit_ = 0;
};
