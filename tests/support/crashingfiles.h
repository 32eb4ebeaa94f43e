// Files in memory that can lose power. What was written and not synced is lost then, or half of it, or
// nothing; of the changes of a directory that were not synced each may or may not have happened.
#pragma once

#include "tests/support/memoryfiles.h"

class CrashingFiles : public MemoryFiles {
  public:
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
                for (const auto& [name, inode] : change) key += name + '>' + std::to_string(inode);
                key += '\4';
            }
            return key;
        }
    };

    CrashingFiles() = default;
    explicit CrashingFiles(const Disk& disk) : synced_(disk.synced) {
        inodes_ = disk.inodes;
        names_ = synced_;
        for (const auto& [number, inode] : inodes_) {
            last_ = std::max(last_, number);
            clock_ = std::max(clock_, inode.changed);
        }
    }

    void put(const std::string& path, const std::string& content) {
        MemoryFiles::put(path, content);
        synced_[path] = last_;
    }

    // The disk before each call that changes it, and at the end.
    std::vector<Disk> moments() {
        changing();
        return std::move(moments_);
    }
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

    int sync(int descriptor) override {
        changing();
        if (const auto file = open_.find(descriptor); file != open_.end()) {
            Inode& inode = inodes_.at(file->second.first);
            inode.synced = inode.content;
        } else {  // the only directory
            synced_ = names_;
            pending_.clear();
        }
        return 0;
    }

  protected:
    void changing() override { moments_.push_back({inodes_, synced_, pending_}); }
    int enter(const Change& change) override {
        changing();
        pending_.push_back(change);
        return MemoryFiles::enter(change);
    }

  private:
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

    Names synced_;
    std::vector<Change> pending_;
    std::vector<Disk> moments_;
};
