// A save of several files leaves all old ones or all new ones, whatever happens to it.
#include "change/fileset.h"

#include "change/saverecord.h"
#include "tests/support/crashingfiles.h"
#include "tests/support/failingfiles.h"
#include "tests/support/temproot.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <set>

namespace {

using State = SaveOutcome::State;

const platform::HostPath record{"/etc/atm/.tarvolin-save"};

// The names and contents of files before and after a save; "(none)" for no file.
struct File {
    std::string path, before, after;
};
using FileSet = std::vector<File>;

// The parameter file unchanged, lists changed, created and removed.
const FileSet five = {{"/etc/atm/tvconf", "c0", "c0"},
                      {"/etc/atm/pvc0", "p0", "p1"},
                      {"/etc/atm/pvc1", "(none)", "q1"},
                      {"/etc/atm/clients", "k0", "(none)"},
                      {"/etc/atm/pvc2", "r0 long", "r1"}};
const FileSet one = {{"/etc/atm/pvc0", "p0", "p1"}};

std::vector<FileEdit> editsOf(const FileSet& set, const std::string& root = "") {
    std::vector<FileEdit> edits;
    for (const File& file : set) {
        FileEdit edit{file.path, {root + file.path}, file.before != "(none)", std::nullopt};
        if (file.after != "(none)") edit.content = file.after;
        edits.push_back(edit);
    }
    return edits;
}

FileSet reversed(FileSet set) {
    for (File& file : set) std::swap(file.before, file.after);
    return set;
}

CrashingFiles::Disk diskOf(const FileSet& set) {
    CrashingFiles files;
    for (const File& file : set)
        if (file.before != "(none)") files.put(file.path, file.before);
    return files.moments().back();
}

// 'o' if all files are the old ones, 'n' if all are the new ones, otherwise 'm'.
template <class Get> char kindOf(const FileSet& set, const Get& get) {
    bool old = true, young = true;
    for (const File& file : set) {
        old &= get(file.path) == file.before;
        young &= get(file.path) == file.after;
    }
    return old ? 'o' : young ? 'n' : 'm';
}

// Recovers each disk that can be found after a loss of power, and each that can be found when the power is
// lost a second time, while recovering. Each once.
class Search {
  public:
    explicit Search(const FileSet& set) : set_(set) {}

    void recoverAll(const CrashingFiles::Disk& moment) { recoverAll(moment, true); }
    void recoverAll(const std::vector<CrashingFiles::Disk>& moments) {
        for (const CrashingFiles::Disk& moment : moments) recoverAll(moment);
    }

    long states = 0, old = 0, young = 0, mixed = 0;

  private:
    void recoverAll(const CrashingFiles::Disk& moment, bool again) {
        if (!moments_[again].insert(moment.key()).second) return;
        CrashingFiles::afterPowerLoss(moment,
                                      [&](const CrashingFiles::Disk& found) { recover(found, again); });
    }

    void recover(const CrashingFiles::Disk& found, bool again) {
        if (!found_[again].insert(found.key()).second) return;
        std::vector<CrashingFiles::Disk> moments;
        {
            CrashingFiles files(found);
            std::vector<std::string> notes;
            EXPECT_EQ(recoverFiles(record, notes), 0);
            const char kind = kindOf(set_, [&](const std::string& path) { return files.get(path); });
            ++states;
            ++(kind == 'o' ? old : kind == 'n' ? young : mixed);
            EXPECT_EQ(files.get(record.text), "(none)");
            moments = files.moments();
        }
        if (again)
            for (const CrashingFiles::Disk& second : moments) recoverAll(second, false);
    }

    const FileSet& set_;
    std::set<std::string> moments_[2], found_[2];  // that were looked at, the second time and the first
};

SaveOutcome save(const FileSet& set, const std::string& root = "") {
    const std::vector<FileEdit> edits = editsOf(set, root);
    const platform::HostPath place{root + record.text};
    return replaceFiles(place, edits, [] { return true; });
}

}  // namespace

TEST(FileSet, PowerIsLostBeforeEveryCall) {
    for (const FileSet& set : {one, five}) {
        CrashingFiles files(diskOf(set));
        ASSERT_EQ(save(set).state, State::done);
        Search search(set);
        search.recoverAll(files.moments());
        RecordProperty(fmt::format("states_of_{}_files", set.size()), fmt::format("{}", search.states));
        EXPECT_EQ(search.mixed, 0) << search.states;
        EXPECT_TRUE(search.old && search.young) << search.states;
    }
}

// Also on the way back, and where the way back fails.
TEST(FileSet, ACallFailsAndThenPowerIsLost) {
    Search search(five);
    std::map<State, int> states;
    for (int k = 1;; ++k) {
        CrashingFiles files(diskOf(five));
        files.failAt(k);
        const SaveOutcome outcome = save(five);
        if (files.changingCalls() < k) break;
        const char kind = kindOf(five, [&](const std::string& path) { return files.get(path); });
        ++states[outcome.state];
        EXPECT_TRUE(outcome.state == State::unfinished || kind == (outcome.state == State::done ? 'n' : 'o'))
            << k;
        const std::vector<CrashingFiles::Disk> moments = files.moments();
        const long mixed = search.mixed;
        search.recoverAll(moments);
        EXPECT_EQ(search.mixed, mixed)
            << k << " " << static_cast<int>(outcome.state) << outcome.file << outcome.putBack;
        if (outcome.state == State::asBefore) {  // what was said to have failed does not happen later
            Search end(five);
            end.recoverAll(moments.back());
            EXPECT_EQ(end.young, 0) << k;
        }
    }
    RecordProperty("states", fmt::format("{}", search.states));
    EXPECT_EQ(search.mixed, 0) << search.states;
    EXPECT_GT(states[State::asBefore], 15);
}

// Each of two calls that follow one another closely; the second strikes the way back.
TEST(FileSet, TheWayBackFails) {
    Search search(five);
    int unfinished = 0;
    for (int k = 1; k < 60; ++k) {
        struct TwoFail : CrashingFiles {
            using CrashingFiles::CrashingFiles;
            using CrashingFiles::rename;
            int rename(const platform::HostPath& from, const platform::HostPath& to) override {
                if (++renames == 3) {  // the second list
                    errno = EIO;
                    failAt(later);
                    return -1;
                }
                return CrashingFiles::rename(from, to);
            }
            int renames = 0, later = 0;
        };
        TwoFail files(diskOf(five));
        files.later = k;
        const SaveOutcome outcome = save(five);
        EXPECT_EQ(outcome.error, EIO);
        unfinished += outcome.state == State::unfinished;
        search.recoverAll(files.moments());
    }
    RecordProperty("states", fmt::format("{}", search.states));
    EXPECT_EQ(search.mixed, 0) << search.states;
    EXPECT_GT(unfinished, 5);
}

// A record whose removal was not synced comes back after a later save, or after somebody made a file anew
// that the first save had removed. Neither must be undone.
TEST(FileSet, ARecordThatComesBackHarmsNothingLater) {
    const FileSet shrink = {{"/etc/atm/pvc0", "p0", "p1"}, {"/etc/atm/clients", "k0", "(none)"}};
    const FileSet laters[] = {
        {{"/etc/atm/clients", "(none)", "k0"}}, {{"/etc/atm/pvc0", "p1", "p0"}}, reversed(shrink)};
    for (const FileSet& later : laters) {
        CrashingFiles files(diskOf(shrink));
        ASSERT_EQ(save(shrink).state, State::done);
        ASSERT_EQ(save(later).state, State::done);
        Search search(later);
        search.recoverAll(files.moments().back());
        EXPECT_EQ(search.old + search.mixed, 0) << search.states;
    }
    CrashingFiles files(diskOf(shrink));
    ASSERT_EQ(save(shrink).state, State::done);
    files.put("/etc/atm/clients", "k0");
    int cameBack = 0;
    CrashingFiles::afterPowerLoss(files.moments().back(), [&](const CrashingFiles::Disk& found) {
        CrashingFiles after(found);
        cameBack += after.get(record.text) != "(none)";
        std::vector<std::string> notes;
        EXPECT_EQ(recoverFiles(record, notes), 0);
        EXPECT_EQ(after.get("/etc/atm/clients"), "k0");
    });
    EXPECT_EQ(cameBack, 1);
}

TEST(FileSet, WhatSomebodyEditedSinceIsLeftAlone) {
    CrashingFiles files(diskOf(five));
    ASSERT_EQ(save(five).state, State::done);
    const std::vector<CrashingFiles::Disk> moments = files.moments();
    int edited = 0;
    for (const CrashingFiles::Disk& moment : moments)
        CrashingFiles::afterPowerLoss(moment, [&](const CrashingFiles::Disk& found) {
            CrashingFiles after(found);
            for (const char* path : {"/etc/atm/pvc0", "/etc/atm/clients"}) after.put(path, "edited");
            std::vector<std::string> notes;
            EXPECT_EQ(recoverFiles(record, notes), 0);
            EXPECT_EQ(after.get("/etc/atm/pvc0") + after.get("/etc/atm/clients"), "editededited");
            edited += notes.size() > 1 &&
                      notes.front() == "/etc/atm/pvc0 was changed since an interrupted save, and left alone.";
        });
    EXPECT_GT(edited, 10);
}

TEST(FileSet, EveryCallFailedInTurnOnTheDisk) {
    long calls = 0;
    for (const FileSet& set : {one, five})
        for (const int error : {ENOSPC, EIO, EDQUOT, EROFS}) {
            for (int k = 1;; ++k, ++calls) {
                const TempRoot root;
                for (const File& file : set)
                    if (file.before != "(none)") root.write(file.path, file.before);
                FailingFiles files;
                files.skipSyncs();
                files.failAt(k, error);
                const SaveOutcome outcome = save(set, root.path());
                if (!files.failed()) break;
                const FileCall kind = files.calls()[static_cast<std::size_t>(k - 1)].kind;
                const char now = kindOf(set, [&](const std::string& path) {
                    return root.exists(path) ? root.read(path) : "(none)";
                });
                EXPECT_EQ(now, outcome.state == State::done ? 'n' : 'o') << k;
                EXPECT_TRUE(outcome.error == error || kind == FileCall::close || kind == FileCall::remove ||
                            outcome.state == State::done)
                    << k;
                std::vector<std::string> notes;
                const platform::HostPath place{root.path().string() + record.text};
                EXPECT_EQ(recoverFiles(place, notes), 0);
                EXPECT_EQ(kindOf(set,
                                 [&](const std::string& path) {
                                     return root.exists(path) ? root.read(path) : "(none)";
                                 }),
                          now);
            }
        }
    EXPECT_GT(calls, 200);
}
