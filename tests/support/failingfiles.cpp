#include "tests/support/failingfiles.h"

#include <algorithm>
#include <cerrno>

using platform::HostPath;

void FailingFiles::failAt(int k, int error, std::optional<FileCall> kind, bool lasting) {
    countdown_ = k;
    error_ = error;
    kind_ = kind;
    lasting_ = lasting;
    failed_ = false;
}

int FailingFiles::count(FileCall kind) const {
    return static_cast<int>(std::ranges::count(calls_, kind, &Call::kind));
}

bool FailingFiles::fails(FileCall kind, const std::string& path) {
    calls_.push_back({kind, path});
    if (countdown_ == 0 || (kind_ && *kind_ != kind) || (countdown_ > 1 && --countdown_)) return false;
    if (!lasting_) countdown_ = 0;
    failed_ = true;
    errno = error_;
    return true;
}

int FailingFiles::open(const HostPath& path, int flags, mode_t mode) {
    return fails(FileCall::open, path.text) ? -1 : real_.open(path, flags, mode);
}

ssize_t FailingFiles::read(int descriptor, void* bytes, size_t count) {
    return fails(FileCall::read) ? -1 : real_.read(descriptor, bytes, count);
}

ssize_t FailingFiles::write(int descriptor, const void* bytes, size_t count) {
    if (fails(FileCall::write)) return -1;
    return real_.write(descriptor, bytes, writeLimit_ ? std::min(count, writeLimit_) : count);
}

off_t FailingFiles::seek(int descriptor, off_t offset, int whence) {
    return fails(FileCall::seek) ? -1 : real_.seek(descriptor, offset, whence);
}

int FailingFiles::truncate(int descriptor, off_t length) {
    return fails(FileCall::truncate) ? -1 : real_.truncate(descriptor, length);
}

int FailingFiles::sync(int descriptor) {
    return fails(FileCall::sync) ? -1 : real_.sync(descriptor);
}

int FailingFiles::close(int descriptor) {
    const bool bad = fails(FileCall::close);
    const int result = real_.close(descriptor);
    if (bad) errno = error_;
    return bad ? -1 : result;
}

int FailingFiles::status(int descriptor, struct stat& result) {
    return fails(FileCall::statusOf) ? -1 : real_.status(descriptor, result);
}

int FailingFiles::status(const HostPath& path, struct stat& result) {
    return fails(FileCall::statusAt, path.text) ? -1 : real_.status(path, result);
}

int FailingFiles::setMode(int descriptor, mode_t mode) {
    return fails(FileCall::setMode) ? -1 : real_.setMode(descriptor, mode);
}

int FailingFiles::setOwner(int descriptor, uid_t user, gid_t group) {
    return fails(FileCall::setOwner) ? -1 : real_.setOwner(descriptor, user, group);
}

int FailingFiles::rename(const HostPath& from, const HostPath& to) {
    return fails(FileCall::rename, from.text) ? -1 : real_.rename(from, to);
}

int FailingFiles::remove(const HostPath& path) {
    return fails(FileCall::remove, path.text) ? -1 : real_.remove(path);
}

int FailingFiles::resolve(const HostPath& path, HostPath& result) {
    return fails(FileCall::resolve, path.text) ? -1 : real_.resolve(path, result);
}
