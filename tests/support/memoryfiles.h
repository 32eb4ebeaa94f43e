// File operations on files that exist in memory only; in place of the system's while the object lives.
// Directories are the beginnings of names only: every one can be made, and a list has files alone.
#pragma once

#include "platform/files.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <map>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

class MemoryFiles : public platform::Files {
  public:
    MemoryFiles() : before_(platform::setFiles(this)) {}
    ~MemoryFiles() override { platform::setFiles(before_); }
    MemoryFiles(const MemoryFiles&) = delete;
    MemoryFiles& operator=(const MemoryFiles&) = delete;

    // A file that is there from the beginning.
    void put(const std::string& path, const std::string& content) {
        inodes_[++last_] = {content, content, ++clock_};
        names_[path] = last_;
    }
    std::string get(const std::string& path) const {
        const auto entry = names_.find(path);
        return entry == names_.end() ? "(none)" : inodes_.at(entry->second).content;
    }
    std::size_t count() const { return names_.size(); }

    int open(const platform::HostPath& path, int flags, mode_t) override {
        const bool known = names_.contains(path.text), made = !known && flags & O_CREAT;
        if (flags & O_DIRECTORY) return ++descriptor_;  // only to sync it
        if (known ? flags & O_EXCL : !made) return fail(known ? EEXIST : ENOENT);
        if (made) {
            inodes_[++last_].changed = ++clock_;
            enter({{path.text, last_}});
        }
        open_[++descriptor_] = {names_.at(path.text), 0};
        return descriptor_;
    }
    ssize_t read(int descriptor, void* bytes, size_t count) override {
        auto& [inode, at] = open_.at(descriptor);
        const std::string& content = inodes_.at(inode).content;
        const std::size_t n = std::min(count, content.size() - std::min(content.size(), at));
        std::copy_n(content.data() + at, n, static_cast<char*>(bytes));
        at += n;
        return static_cast<ssize_t>(n);
    }
    ssize_t write(int descriptor, const void* bytes, size_t count) override {
        changing();
        auto& [number, at] = open_.at(descriptor);
        Inode& inode = inodes_.at(number);
        inode.content.resize(std::max(inode.content.size(), at + count));
        std::copy_n(static_cast<const char*>(bytes), count, inode.content.data() + at);
        inode.changed = ++clock_;
        at += count;
        return static_cast<ssize_t>(count);
    }
    off_t seek(int descriptor, off_t offset, int whence) override {
        auto& [inode, at] = open_.at(descriptor);
        const std::size_t from = whence == SEEK_SET   ? 0
                                 : whence == SEEK_CUR ? at
                                                      : inodes_.at(inode).content.size();
        at = from + static_cast<std::size_t>(offset);
        return static_cast<off_t>(at);
    }
    int truncate(int descriptor, off_t length) override {
        changing();
        inodes_.at(open_.at(descriptor).first).content.resize(static_cast<std::size_t>(length));
        return 0;
    }
    int sync(int) override { return 0; }
    int close(int descriptor) override {
        open_.erase(descriptor);
        return 0;
    }

    int status(int descriptor, struct stat& result) override {
        const auto file = open_.find(descriptor);
        return describe(file == open_.end() ? 0 : file->second.first, result);
    }
    int status(const platform::HostPath& path, struct stat& result) override {
        const auto entry = names_.find(path.text);
        return entry == names_.end() ? fail(ENOENT) : describe(entry->second, result);
    }
    int takeAttributes(int, int) override { return 0; }

    int rename(const platform::HostPath& from, const platform::HostPath& to) override {
        if (!names_.contains(from.text)) return fail(ENOENT);
        return enter({{to.text, names_.at(from.text)}, {from.text, 0}});
    }
    int remove(const platform::HostPath& path) override {
        if (!names_.contains(path.text)) return fail(ENOENT);
        return enter({{path.text, 0}});
    }
    int resolve(const platform::HostPath& path, platform::HostPath& result) override {
        result = path;
        return 0;
    }

    int makeDirectory(const platform::HostPath&, mode_t) override { return 0; }
    int link(const platform::HostPath& from, const platform::HostPath& to) override {
        if (!names_.contains(from.text) || names_.contains(to.text)) return fail(EEXIST);
        return enter({{to.text, names_.at(from.text)}});
    }
    int list(const platform::HostPath& directory, std::vector<std::string>& names) override {
        names.clear();
        for (const auto& [path, inode] : names_)
            if (platform::directoryOf({path}) == directory) names.push_back(path.substr(path.rfind('/') + 1));
        return 0;
    }

  protected:
    struct Inode {
        std::string content, synced;
        long changed = 0;  // the time of change, counted
    };
    using Names = std::map<std::string, int>;
    // Names in a directory come or go (inode 0), one or two at a time.
    using Change = std::vector<Names::value_type>;

    virtual void changing() {}  // called before each change of a content
    virtual int enter(const Change& change) {
        apply(change, names_);
        return 0;
    }
    static void apply(const Change& change, Names& names) {
        for (const auto& [name, inode] : change)
            if (inode)
                names[name] = inode;
            else
                names.erase(name);
    }
    static int fail(int error) {
        errno = error;
        return -1;
    }

    std::map<int, Inode> inodes_;
    Names names_;
    std::map<int, std::pair<int, std::size_t>> open_;  // inode and place; not the directories
    int last_ = 0;                                     // inode
    long clock_ = 0;

  private:
    int describe(int inode, struct stat& result) {
        result = {};
        result.st_mode = S_IFREG | 0644;
        result.st_uid = ::geteuid();
        result.st_nlink = 1;
        result.st_ino = static_cast<ino_t>(inode);
        if (inode) result.st_mtim.tv_sec = result.st_ctim.tv_sec = inodes_.at(inode).changed;
        return 0;
    }

    platform::Files* before_;
    int descriptor_ = 0;
};
