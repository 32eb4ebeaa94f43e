// The configuration of all adapters: as the files have it, and as this program has it.
#pragma once

#include "config/driverpdf.h"
#include "model/tvdatbuf.h"
#include "platform/lock.h"

#include <chrono>
#include <string>
#include <vector>

// Puts what `base` has in place of sections that an editor could not read, and of lists: nobody has changed
// them.
void keepUnknown(int adapter, const DriverPdfEdit& editor, const AtmDevices& base, AtmDevices& theirs);

class Configuration {
  public:
    // `mine` is filled by read() and changed by the dialogs. `program` names the holder of the lock.
    explicit Configuration(std::string program, AtmDevices& mine = atmDevices);

    // Reads the files of all adapters, at start-up. Completes the save of a process that was killed, when
    // nobody holds the lock. False when the parameter file could not be read.
    bool read();

    // Before an adapter is changed: takes over what others have changed in the files since. What this program
    // has changed and not saved stays.
    void readAgain(int adapter);

    // The adapter's lists that this program has changed and not saved: "LEC 2", "LES 1".
    std::vector<std::string> unsavedLists(int adapter) const;
    // Of those that no file can keep: servers without a client table.
    std::vector<std::string> listsWithoutFile(int adapter) const;

    const AtmDevices& base() const { return base_; }  // as the files had it when `mine` was made of it
    const AtmDevices& mine() const { return mine_; }
    AtmDevices& base() { return base_; }
    AtmDevices& mine() { return mine_; }

    // Takes the lock, then completes the save of a process that was killed and removes its copies. 0, or the
    // errno of ConfigurationLock::take or of the recovery; `failed` then names the file.
    int lock(std::chrono::milliseconds patience, std::string& failed);
    void unlock() { lock_.release(); }
    const std::string& holder() const { return waiting_.empty() ? lock_.holder() : waiting_; }

    // The record of a save, beside the parameter file, whose place this is with symbolic links followed.
    static platform::HostPath saveRecord(const platform::HostPath& parameterFile);

    const std::string& program() const { return program_; }

    // A change that waits for its confirmation is no reason not to lock: for whoever confirms it, or takes it
    // back. Others find it locked by that change.
    bool passPending = false;

    // What the driver says of itself; empty without a driver. Values that were sent to another one are void.
    std::string driverRevision;

    // A driver has hung up: what was sent to it says nothing about the next one. Kept in mind until the lock
    // can be taken.
    void driverLost();
    // At the end of a run: the same, if nobody could note it until now because others held the lock.
    void noteLostDriver();
    // Under the lock. True when there was such a driver.
    bool forgetLostDriver();

    // For editors of this configuration.
    const std::shared_ptr<ReadCache>& known() const { return known_; }

    // Sentences of what was found while recovering, for the user. Emptied by the call.
    std::vector<std::string> takeNotes();
    void note(const std::string& sentence) { notes_.push_back(sentence); }

  private:
    std::vector<std::string> changedLists(int adapter, bool kept) const;
    int recover(const platform::HostPath& record);

    std::string program_;
    AtmDevices& mine_;
    AtmDevices base_;
    std::shared_ptr<ReadCache> known_ = std::make_shared<ReadCache>();
    platform::ConfigurationLock lock_;
    std::string waiting_;  // the change that waits for its confirmation
    std::vector<std::string> notes_;
    bool driverLost_ = false;
};
