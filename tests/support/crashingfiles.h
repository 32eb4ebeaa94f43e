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

        std::string operator[](const std::string& path) const {
            const auto entry = synced.find(path);
            return entry == synced.end() ? "(none)" : inodes.at(entry->second).content;
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
        std::vector<int> unsynced;
        for (const auto& [number, inode] : disk.inodes)
            if (inode.content != inode.synced) unsynced.push_back(number);
        std::set<std::string> seen;
        std::size_t versions = 1;
        for (std::size_t i = 0; i < unsynced.size(); ++i) versions *= 3;
        for (std::size_t names = 0; names < std::size_t{1} << disk.pending.size(); ++names)
            for (std::size_t version = 0; version < versions; ++version) {
                Disk found{disk.inodes, disk.synced, {}};
                for (std::size_t i = 0; i < disk.pending.size(); ++i)
                    if (names >> i & 1) apply(disk.pending[i], found.synced);
                std::size_t rest = version;
                for (const int number : unsynced) {
                    Inode& inode = found.inodes.at(number);
                    if (rest % 3 == 0) inode.content = inode.synced;
                    if (rest % 3 == 1) inode.content.resize(inode.content.size() / 2);
                    rest /= 3;
                }
                for (auto& [number, inode] : found.inodes) inode.synced = inode.content;
                std::string key;
                for (const auto& [path, number] : found.synced) key += path + '=' + found[path] + '\1';
                if (seen.insert(key).second) look(found);
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
