// The system's file operations, with failures on demand: stands in front of those that are in place while the
// object lives.
#pragma once

#include "platform/files.h"

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
    takeAttributes,
    rename,
    remove,
    resolve,
    makeDirectory,
    link,
    list
};

class FailingFiles : public platform::Files {
  public:
    struct Call {
        FileCall kind;
        std::string path;  // of the first path named, empty for descriptors
    };

    FailingFiles() : real_(platform::files()), before_(platform::setFiles(this)) {}
    ~FailingFiles() override { platform::setFiles(before_); }
    FailingFiles(const FailingFiles&) = delete;
    FailingFiles& operator=(const FailingFiles&) = delete;

    // The k-th call from now on (counted from 1), of any kind or of one, fails with `error`. Later calls work
    // again, unless `lasting`. A failing close closes all the same, as the system's does.
    void failAt(int k, int error, std::optional<FileCall> kind = std::nullopt, bool lasting = false) {
        countdown_ = k;
        error_ = error;
        kind_ = kind;
        lasting_ = lasting;
        failed_ = false;
    }

    // Every write takes at most so many bytes, as a system may.
    void limitWrites(std::size_t bytes) { writeLimit_ = bytes; }

    // Nothing is brought to the disk, which takes most of a save's time. The calls count all the same.
    void skipSyncs() { skipSyncs_ = true; }

    // Called before each call, with its kind: what a process finds that comes, or is killed, at this moment.
    std::function<void(FileCall)> onCall;

    bool failed() const { return failed_; }
    const std::vector<Call>& calls() const { return calls_; }
    int count(FileCall kind) const { return static_cast<int>(std::ranges::count(calls_, kind, &Call::kind)); }

    int open(const platform::HostPath& path, int flags, mode_t mode) override {
        return fails(FileCall::open, path.text) ? -1 : real_.open(path, flags, mode);
    }
    ssize_t read(int descriptor, void* bytes, size_t count) override {
        return fails(FileCall::read) ? -1 : real_.read(descriptor, bytes, count);
    }
    ssize_t write(int descriptor, const void* bytes, size_t count) override {
        if (fails(FileCall::write)) return -1;
        return real_.write(descriptor, bytes, writeLimit_ ? std::min(count, writeLimit_) : count);
    }
    off_t seek(int descriptor, off_t offset, int whence) override {
        return fails(FileCall::seek) ? -1 : real_.seek(descriptor, offset, whence);
    }
    int truncate(int descriptor, off_t length) override {
        return fails(FileCall::truncate) ? -1 : real_.truncate(descriptor, length);
    }
    int sync(int descriptor) override {
        return fails(FileCall::sync) ? -1 : skipSyncs_ ? 0 : real_.sync(descriptor);
    }
    int close(int descriptor) override {
        const bool bad = fails(FileCall::close);
        const int result = real_.close(descriptor);
        if (bad) errno = error_;
        return bad ? -1 : result;
    }
    int status(int descriptor, struct stat& result) override {
        return fails(FileCall::statusOf) ? -1 : real_.status(descriptor, result);
    }
    int status(const platform::HostPath& path, struct stat& result) override {
        return fails(FileCall::statusAt, path.text) ? -1 : real_.status(path, result);
    }
    int takeAttributes(int from, int to) override {
        return fails(FileCall::takeAttributes) ? -1 : real_.takeAttributes(from, to);
    }
    int takeTimes(int from, int to) override { return real_.takeTimes(from, to); }
    int rename(const platform::HostPath& from, const platform::HostPath& to) override {
        return fails(FileCall::rename, from.text) ? -1 : real_.rename(from, to);
    }
    int remove(const platform::HostPath& path) override {
        return fails(FileCall::remove, path.text) ? -1 : real_.remove(path);
    }
    int resolve(const platform::HostPath& path, platform::HostPath& result) override {
        return fails(FileCall::resolve, path.text) ? -1 : real_.resolve(path, result);
    }
    int makeDirectory(const platform::HostPath& path, mode_t mode) override {
        return fails(FileCall::makeDirectory, path.text) ? -1 : real_.makeDirectory(path, mode);
    }
    int link(const platform::HostPath& from, const platform::HostPath& to) override {
        return fails(FileCall::link, from.text) ? -1 : real_.link(from, to);
    }
    int list(const platform::HostPath& directory, std::vector<std::string>& names) override {
        return fails(FileCall::list, directory.text) ? -1 : real_.list(directory, names);
    }

  private:
    bool fails(FileCall kind, const std::string& path = {}) {
        calls_.push_back({kind, path});
        if (onCall) onCall(kind);
        if (countdown_ == 0 || (kind_ && *kind_ != kind) || (countdown_ > 1 && --countdown_)) return false;
        if (!lasting_) countdown_ = 0;
        failed_ = true;
        errno = error_;
        return true;
    }

    platform::Files& real_;
    platform::Files* before_;
    std::vector<Call> calls_;
    int countdown_ = 0;
    int error_ = 0;
    std::optional<FileCall> kind_;
    bool lasting_ = false;
    bool failed_ = false;
    std::size_t writeLimit_ = 0;
    bool skipSyncs_ = false;
};
