// File operations on files that exist in memory only; in place of the system's while the object lives.
#pragma once

#include "platform/files.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <map>
#include <memory>
#include <string>

class MemoryFiles : public platform::Files {
  public:
    MemoryFiles() : before_(platform::setFiles(this)) {}
    ~MemoryFiles() override { platform::setFiles(before_); }
    MemoryFiles(const MemoryFiles&) = delete;
    MemoryFiles& operator=(const MemoryFiles&) = delete;

    void put(const std::string& path, std::string content) {
        files_[path] = std::make_shared<std::string>(std::move(content));
    }
    std::string get(const std::string& path) const { return *files_.at(path); }
    std::size_t count() const { return files_.size(); }

    int open(const platform::HostPath& path, int flags, mode_t) override {
        const bool directory = flags & O_DIRECTORY, known = files_.contains(path.text);
        if (!directory && !known && !(flags & O_CREAT)) return fail(ENOENT);
        if (known && (flags & O_EXCL)) return fail(EEXIST);
        auto& file = directory ? directory_ : files_[path.text];
        if (!file) file = std::make_shared<std::string>();
        open_[++last_] = {file, 0};
        return last_;
    }
    ssize_t read(int descriptor, void* bytes, size_t count) override {
        Open& file = open_.at(descriptor);
        const std::size_t n = std::min(count, file.content->size() - std::min(file.content->size(), file.at));
        std::copy_n(file.content->data() + file.at, n, static_cast<char*>(bytes));
        file.at += n;
        return static_cast<ssize_t>(n);
    }
    ssize_t write(int descriptor, const void* bytes, size_t count) override {
        Open& file = open_.at(descriptor);
        file.content->resize(std::max(file.content->size(), file.at + count));
        std::copy_n(static_cast<const char*>(bytes), count, file.content->data() + file.at);
        file.at += count;
        return static_cast<ssize_t>(count);
    }
    off_t seek(int descriptor, off_t offset, int whence) override {
        Open& file = open_.at(descriptor);
        const off_t from =
            whence == SEEK_SET ? 0 : static_cast<off_t>(whence == SEEK_CUR ? file.at : file.content->size());
        file.at = static_cast<std::size_t>(from + offset);
        return from + offset;
    }
    int truncate(int descriptor, off_t length) override {
        open_.at(descriptor).content->resize(static_cast<std::size_t>(length));
        return 0;
    }
    int sync(int) override { return 0; }
    int close(int descriptor) override { return open_.erase(descriptor) ? 0 : fail(EBADF); }

    int status(int, struct stat& result) override {
        result = {};
        result.st_mode = S_IFREG | 0644;
        return 0;
    }
    int status(const platform::HostPath&, struct stat& result) override { return status(0, result); }
    int takeAttributes(int, int) override { return 0; }

    int rename(const platform::HostPath& from, const platform::HostPath& to) override {
        if (!files_.contains(from.text)) return fail(ENOENT);
        files_[to.text] = files_.at(from.text);
        files_.erase(from.text);
        return 0;
    }
    int remove(const platform::HostPath& path) override { return files_.erase(path.text) ? 0 : fail(ENOENT); }
    int resolve(const platform::HostPath& path, platform::HostPath& result) override {
        result = path;
        return 0;
    }

    // Directories are the beginnings of names only: every one can be made, and a list has files alone.
    int makeDirectory(const platform::HostPath&, mode_t) override { return 0; }
    int link(const platform::HostPath& from, const platform::HostPath& to) override {
        if (!files_.contains(from.text)) return fail(ENOENT);
        return files_.emplace(to.text, files_.at(from.text)).second ? 0 : fail(EEXIST);
    }
    int list(const platform::HostPath& directory, std::vector<std::string>& names) override {
        names.clear();
        for (const auto& [path, content] : files_)
            if (platform::directoryOf({path}) == directory) names.push_back(path.substr(path.rfind('/') + 1));
        return 0;
    }

  private:
    struct Open {
        std::shared_ptr<std::string> content;
        std::size_t at;
    };

    static int fail(int error) {
        errno = error;
        return -1;
    }

    platform::Files* before_;
    std::map<std::string, std::shared_ptr<std::string>> files_;
    std::shared_ptr<std::string> directory_;
    std::map<int, Open> open_;
    int last_ = 0;
};
