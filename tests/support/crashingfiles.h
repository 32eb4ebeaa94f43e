// Files in memory that can lose power. What was written and not synced is lost then, or half of it, or
// nothing; of the changes of a directory that were not synced each may or may not have happened. In place of
// the system's files while the object lives.
#pragma once

#include "platform/files.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

class CrashingFiles : public platform::Files {
  public:
    struct Inode {
        std::string content, synced;
        long changed = 0;  // the time of change, counted
    };
    // A name in a directory comes or goes (inode 0). One change of a directory is one or two of these.
    struct NameChange {
        std::string name;
        int inode;
    };
    using Change = std::vector<NameChange>;
    using Names = std::map<std::string, int>;

    // Everything that decides what is there after a loss of power.
    struct Disk {
        std::map<int, Inode> inodes;
        Names synced;                 // paths
        std::vector<Change> pending;  // since then, in order

        // The same for disks of which the same can be found.
        std::string key() const {
            std::string key;
            for (const auto& [path, number] : synced) key += path + '=' + std::to_string(number) + '\1';
            for (const auto& [number, inode] : inodes)
                key += std::to_string(number) + ':' + std::to_string(inode.changed) + '\2' + inode.content +
                       '\2' + inode.synced + '\3';
            for (const Change& change : pending) {
                for (const NameChange& name : change) key += name.name + '>' + std::to_string(name.inode);
                key += '\4';
            }
            return key;
        }
    };

    explicit CrashingFiles(Disk disk = {})
        : disk_(std::move(disk)), now_(disk_.synced), before_(platform::setFiles(this)) {
        for (auto& [number, inode] : disk_.inodes) last_ = std::max(last_, number);
    }
    ~CrashingFiles() override { platform::setFiles(before_); }
    CrashingFiles(const CrashingFiles&) = delete;
    CrashingFiles& operator=(const CrashingFiles&) = delete;

    // A file that is there from the beginning.
    void put(const std::string& path, const std::string& content) {
        disk_.inodes[++last_] = {content, content, ++clock_};
        disk_.synced[path] = now_[path] = last_;
    }
    std::string get(const std::string& path) const {
        const auto entry = now_.find(path);
        return entry == now_.end() ? "(none)" : disk_.inodes.at(entry->second).content;
    }
    std::size_t count() const { return now_.size(); }

    // The disk before each call that changes it, and at the end.
    std::vector<Disk> moments() {
        note();
        return std::move(moments_);
    }
    // The k-th call that changes something (from 1) fails with EIO.
    void failAt(int k) { countdown_ = k; }
    int changingCalls() const { return calls_; }

    // Every disk that can be found after the power was lost, each once.
    static void afterPowerLoss(const Disk& disk, const std::function<void(const Disk&)>& look) {
        std::set<Names> all{disk.synced};
        for (const Change& change : disk.pending) {
            std::set<Names> happened;
            for (Names names : all) {
                apply(change, names);
                happened.insert(std::move(names));
            }
            all.merge(happened);
        }
        for (const Names& names : all) {
            Disk found{{}, names, {}};
            for (const auto& [path, number] : names) found.inodes[number] = disk.inodes.at(number);
            withLostData(found, found.inodes.begin(), look);
        }
    }

    int open(const platform::HostPath& path, int flags, mode_t) override {
        if (flags & O_DIRECTORY) return ++descriptor_;  // only to sync it
        const bool known = now_.contains(path.text);
        if (known && (flags & O_EXCL)) return fail(EEXIST);
        if (!known && !(flags & O_CREAT)) return fail(ENOENT);
        if (!known) {
            if (!changes()) return -1;
            disk_.inodes[++last_].changed = ++clock_;
            enter({{path.text, last_}});
        }
        open_[++descriptor_] = {now_.at(path.text), 0};
        return descriptor_;
    }
    ssize_t read(int descriptor, void* bytes, size_t count) override {
        auto& [number, at] = open_.at(descriptor);
        const std::string& content = disk_.inodes.at(number).content;
        const std::size_t n = std::min(count, content.size() - std::min(content.size(), at));
        std::copy_n(content.data() + at, n, static_cast<char*>(bytes));
        at += n;
        return static_cast<ssize_t>(n);
    }
    ssize_t write(int descriptor, const void* bytes, size_t count) override {
        if (!changes()) return -1;
        Inode& inode = disk_.inodes.at(open_.at(descriptor).first);
        inode.content.append(static_cast<const char*>(bytes), count);
        inode.changed = ++clock_;
        return static_cast<ssize_t>(count);
    }
    off_t seek(int descriptor, off_t offset, int) override {
        open_.at(descriptor).second = static_cast<std::size_t>(offset);
        return offset;
    }
    int truncate(int, off_t) override { return fail(ENOSYS); }
    int sync(int descriptor) override {
        if (!changes()) return -1;
        const auto file = open_.find(descriptor);
        if (file != open_.end()) {
            Inode& inode = disk_.inodes.at(file->second.first);
            inode.synced = inode.content;
        } else {  // the only directory
            disk_.synced = now_;
            disk_.pending.clear();
        }
        return 0;
    }
    int close(int descriptor) override {
        open_.erase(descriptor);
        return 0;
    }

    int status(int descriptor, struct stat& result) override {
        const auto file = open_.find(descriptor);
        return describe(file == open_.end() ? 0 : file->second.first, result);
    }
    int status(const platform::HostPath& path, struct stat& result) override {
        const auto entry = now_.find(path.text);
        return entry == now_.end() ? fail(ENOENT) : describe(entry->second, result);
    }
    int takeAttributes(int, int) override { return 0; }

    int rename(const platform::HostPath& from, const platform::HostPath& to) override {
        const auto entry = now_.find(from.text);
        if (entry == now_.end()) return fail(ENOENT);
        if (!changes()) return -1;
        enter({{to.text, entry->second}, {from.text, 0}});
        return 0;
    }
    int remove(const platform::HostPath& path) override {
        if (!now_.contains(path.text)) return fail(ENOENT);
        if (!changes()) return -1;
        enter({{path.text, 0}});
        return 0;
    }
    int resolve(const platform::HostPath& path, platform::HostPath& result) override {
        result = path;
        return 0;
    }
    int makeDirectory(const platform::HostPath&, mode_t) override { return fail(ENOSYS); }
    int link(const platform::HostPath&, const platform::HostPath&) override { return fail(ENOSYS); }
    int list(const platform::HostPath&, std::vector<std::string>&) override { return fail(ENOSYS); }

  private:
    static int fail(int error) {
        errno = error;
        return -1;
    }
    static void apply(const Change& change, Names& names) {
        for (const auto& [name, inode] : change)
            if (inode)
                names[name] = inode;
            else
                names.erase(name);
    }
    // From an inode on: what was not synced is there, or half of it, or nothing.
    static void withLostData(Disk& disk, std::map<int, Inode>::iterator from,
                             const std::function<void(const Disk&)>& look) {
        while (from != disk.inodes.end() && from->second.content == from->second.synced) ++from;
        if (from == disk.inodes.end()) return look(disk);
        const Inode before = from->second;
        const auto next = std::next(from);
        std::set<std::string> contents{before.content, before.content.substr(0, before.content.size() / 2),
                                       before.synced};
        for (const std::string& content : contents) {
            from->second.content = from->second.synced = content;
            withLostData(disk, next, look);
        }
        from->second = before;
    }
    void enter(const Change& change) {
        apply(change, now_);
        disk_.pending.push_back(change);
    }
    void note() { moments_.push_back(disk_); }
    bool changes() {
        note();
        ++calls_;
        if (countdown_ == 0 || --countdown_) return true;
        errno = EIO;
        return false;
    }
    int describe(int number, struct stat& result) const {
        result = {};
        result.st_mode = S_IFREG | 0644;
        result.st_nlink = 1;
        result.st_ino = static_cast<ino_t>(number);
        if (number) result.st_ctim.tv_sec = disk_.inodes.at(number).changed;
        return 0;
    }

    Disk disk_;
    Names now_;
    platform::Files* before_;
    std::map<int, std::pair<int, std::size_t>> open_;  // inode and place
    std::vector<Disk> moments_;
    int descriptor_ = 0, last_ = 0, countdown_ = 0, calls_ = 0;
    long clock_ = 0;
};
